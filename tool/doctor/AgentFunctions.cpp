#include "tool/doctor/AgentFunctions.h"

#include <algorithm>
#include <array>

#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/ClientHandlerGroup.h"
#include "dispatcher/groups/CryptoGroup.h"
#include "dispatcher/groups/InfoGroup.h"
#include "dispatcher/groups/LoggerGroup.h"
#include "dispatcher/groups/MsgbusGroup.h"
#include "dispatcher/groups/PolicyGroup.h"
#include "dispatcher/groups/PropertyGroup.h"
#include "dispatcher/groups/SchedulerGroup.h"
#include "dispatcher/groups/UpdaterGroup.h"
#include "dispatcher/groups/VariantGroup.h"

namespace tool::doctor {

namespace {

const bridge::Group* const groups[] = {&bridge::clientHandlerGroup, &bridge::propertyGroup, &bridge::policyGroup,
                                       &bridge::schedulerGroup,     &bridge::updaterGroup,  &bridge::cryptoGroup,
                                       &bridge::infoGroup,          &bridge::variantGroup,  &bridge::bufferGroup,
                                       &bridge::msgbusGroup,        &bridge::loggerGroup};

constexpr char client[] = "agent client: it cannot be created and started, and no module is asked for anything";
constexpr char withdrawal[] = "end of a client or a registration: a product that leaves stays with the agent";
constexpr char properties[] = "collection of properties";
constexpr char policies[] = "enforcement of policies";
constexpr char tasks[] = "scheduled task";
constexpr char updates[] = "update notification, nor product information";
constexpr char crypto[] = "encryption, decryption or hashing";
constexpr char information[] = "information of the agent";
constexpr char texts[] = "text from or to the agent: ids, properties, settings, tasks and product information fail";

struct Use {
    std::string_view function;
    const char* use;
};
// Each function that the bridge calls and misses.
constexpr Use uses[] = {
    {"ny_client_handler_create", client},
    {"ny_client_handler_start", client},
    {"ny_client_handler_stop", withdrawal},
    {"ny_client_handler_release", withdrawal},
    {"ny_property_register_provider_callback", properties},
    {"ny_property_unregister_provider_callback", withdrawal},
    {"ny_property_bag_add_property", properties},
    {"ny_policy_uri_create", policies},
    {"ny_policy_uri_release", policies},
    {"ny_policy_uri_add_ref", policies},
    {"ny_policy_uri_set_software_id", policies},
    {"ny_policy_uri_set_user", policies},
    {"ny_policy_uri_get_feature", policies},
    {"ny_policy_uri_get_category", policies},
    {"ny_policy_uri_get_type", policies},
    {"ny_policy_uri_get_name", policies},
    {"ny_policy_uri_get_pso_digest", policies},
    {"ny_policy_uri_get_pso_name", policies},
    {"ny_policy_uri_get_pso_param_int", policies},
    {"ny_policy_uri_get_pso_param_str", policies},
    {"ny_policy_bag_release", policies},
    {"ny_policy_bag_get_uri_iterator", policies},
    {"ny_policy_bag_get_section_iterator", policies},
    {"ny_policy_bag_get_setting_iterator", policies},
    {"ny_policy_bag_uri_iterator_get_next", policies},
    {"ny_policy_bag_section_iterator_get_next", policies},
    {"ny_policy_bag_setting_iterator_get_next", policies},
    {"ny_policy_bag_iterator_release", policies},
    {"ny_policy_register_notification_callback", policies},
    {"ny_policy_unregister_notification_callback", withdrawal},
    {"ny_policy_get", policies},
    {"ny_policy_enforce", policies},
    {"ny_scheduler_register_task_callbacks", tasks},
    {"ny_scheduler_unregister_task_callbacks", withdrawal},
    {"ny_scheduler_update_task_status", tasks},
    {"ny_updater_register_callbacks", updates},
    {"ny_updater_unregister_callbacks", withdrawal},
    {"ny_crypto_encrypt_data_by_type", crypto},
    {"ny_crypto_decrypt_data_by_type", crypto},
    {"ny_crypto_hash_data_by_type", crypto},
    {"ny_info_get", information},
    {"ny_buffer_get_string", texts},
    {"ny_buffer_get_raw", crypto},
    {"ny_buffer_create", crypto},
    {"ny_buffer_release", texts},
    {"ny_wbuffer_release", texts},
    {"ny_wbuffer_get_string", texts},
    {"ny_variant_release", texts},
    {"ny_variant_create_from_string", texts},
    {"ny_variant_get_string_buffer", texts},
    {"ny_variant_create_from_wstring", texts},
    {"ny_variant_get_wstring_buffer", texts},
    {"ny_variant_get_string", texts},
    {"ny_variant_get_table", tasks},
    {"ny_table_release", tasks},
    {"ny_table_get_wvalue", tasks},
    {"ny_table_get_keys", tasks},
    {"ny_array_release", tasks},
    {"ny_array_size", tasks},
    {"ny_array_get_element_at", tasks},
};

constexpr AgentLibrary libraries[] = {
    {"ny_client.dll", client},
    {"ny_variant.dll", texts},
    {"ny_msgbus.dll", "message bus of the agent's; nothing that a module is asked for needs it"},
    {"ny_logger.dll", "log of the agent's; nothing that a module is asked for needs it"},
};

}  // namespace

std::span<const AgentLibrary> AgentLibraries() {
    return libraries;
}

std::vector<std::string_view> FunctionsOf(std::string_view library) {
    std::vector<std::string_view> functions;
    for (const bridge::Group* const group : groups) {
        if (group->library == library) {
            functions.insert(functions.end(), group->names, group->names + group->count);
        }
    }
    return functions;
}

std::string_view UseOf(std::string_view function) {
    const auto* const found =
        std::find_if(std::begin(uses), std::end(uses), [&](const Use& use) { return use.function == function; });
    return found != std::end(uses) ? found->use : std::string_view();
}

}  // namespace tool::doctor
