// The names under which the fuzzed agent's functions are found.
#include <map>

#include "fuzz/FuzzedAgent.h"

namespace {

struct NamedFunction {
    template <class Function>
    NamedFunction(const char* functionName, Function* function)
        : name(functionName), address(reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function))) {}

    const char* name;
    FARPROC address;
};

const NamedFunction functions[] = {
    {"ny_buffer_create", &ny_buffer_create},
    {"ny_buffer_release", &ny_buffer_release},
    {"ny_buffer_get_string", &ny_buffer_get_string},
    {"ny_buffer_get_raw", &ny_buffer_get_raw},
    {"ny_wbuffer_release", &ny_wbuffer_release},
    {"ny_wbuffer_get_string", &ny_wbuffer_get_string},
    {"ny_variant_release", &ny_variant_release},
    {"ny_variant_create_from_string", &ny_variant_create_from_string},
    {"ny_variant_create_from_wstring", &ny_variant_create_from_wstring},
    {"ny_variant_get_string_buffer", &ny_variant_get_string_buffer},
    {"ny_variant_get_wstring_buffer", &ny_variant_get_wstring_buffer},
    {"ny_variant_get_string", &ny_variant_get_string},
    {"ny_variant_get_table", &ny_variant_get_table},
    {"ny_table_release", &ny_table_release},
    {"ny_table_get_wvalue", &ny_table_get_wvalue},
    {"ny_table_get_keys", &ny_table_get_keys},
    {"ny_array_release", &ny_array_release},
    {"ny_array_size", &ny_array_size},
    {"ny_array_get_element_at", &ny_array_get_element_at},
    {"ny_policy_uri_create", &ny_policy_uri_create},
    {"ny_policy_uri_add_ref", &ny_policy_uri_add_ref},
    {"ny_policy_uri_release", &ny_policy_uri_release},
    {"ny_policy_uri_set_software_id", &ny_policy_uri_set_software_id},
    {"ny_policy_uri_set_user", &ny_policy_uri_set_user},
    {"ny_policy_uri_get_feature", &ny_policy_uri_get_feature},
    {"ny_policy_uri_get_category", &ny_policy_uri_get_category},
    {"ny_policy_uri_get_type", &ny_policy_uri_get_type},
    {"ny_policy_uri_get_name", &ny_policy_uri_get_name},
    {"ny_policy_uri_get_pso_name", &ny_policy_uri_get_pso_name},
    {"ny_policy_uri_get_pso_param_int", &ny_policy_uri_get_pso_param_int},
    {"ny_policy_uri_get_pso_param_str", &ny_policy_uri_get_pso_param_str},
    {"ny_policy_uri_get_pso_digest", &ny_policy_uri_get_pso_digest},
    {"ny_policy_get", &ny_policy_get},
    {"ny_policy_bag_release", &ny_policy_bag_release},
    {"ny_policy_bag_get_uri_iterator", &ny_policy_bag_get_uri_iterator},
    {"ny_policy_bag_get_section_iterator", &ny_policy_bag_get_section_iterator},
    {"ny_policy_bag_get_setting_iterator", &ny_policy_bag_get_setting_iterator},
    {"ny_policy_bag_uri_iterator_get_next", &ny_policy_bag_uri_iterator_get_next},
    {"ny_policy_bag_section_iterator_get_next", &ny_policy_bag_section_iterator_get_next},
    {"ny_policy_bag_setting_iterator_get_next", &ny_policy_bag_setting_iterator_get_next},
    {"ny_policy_bag_iterator_release", &ny_policy_bag_iterator_release},
    {"ny_policy_enforce", &ny_policy_enforce},
    {"ny_client_handler_create", &ny_client_handler_create},
    {"ny_client_handler_start", &ny_client_handler_start},
    {"ny_client_handler_stop", &ny_client_handler_stop},
    {"ny_client_handler_release", &ny_client_handler_release},
    {"ny_client_handler_set_thread_option", &ny_client_handler_set_thread_option},
    {"ny_client_handler_set_logger_callback", &ny_client_handler_set_logger_callback},
    {"ny_client_handler_set_msgbus_passphrase_callback", &ny_client_handler_set_msgbus_passphrase_callback},
    {"ny_client_handler_get_msgbus", &ny_client_handler_get_msgbus},
    {"ny_msgbus_get_version", &ny_msgbus_get_version},
    {"ny_msgbus_disable_watcher", &ny_msgbus_disable_watcher},
    {"ny_property_register_provider_callback", &ny_property_register_provider_callback},
    {"ny_property_unregister_provider_callback", &ny_property_unregister_provider_callback},
    {"ny_property_bag_add_property", &ny_property_bag_add_property},
    {"ny_policy_register_notification_callback", &ny_policy_register_notification_callback},
    {"ny_policy_unregister_notification_callback", &ny_policy_unregister_notification_callback},
    {"ny_scheduler_register_task_callbacks", &ny_scheduler_register_task_callbacks},
    {"ny_scheduler_unregister_task_callbacks", &ny_scheduler_unregister_task_callbacks},
    {"ny_scheduler_update_task_status", &ny_scheduler_update_task_status},
    {"ny_updater_register_callbacks", &ny_updater_register_callbacks},
    {"ny_updater_unregister_callbacks", &ny_updater_unregister_callbacks},
    {"ny_crypto_encrypt_data_by_type", &ny_crypto_encrypt_data_by_type},
    {"ny_crypto_decrypt_data_by_type", &ny_crypto_decrypt_data_by_type},
    {"ny_crypto_hash_data_by_type", &ny_crypto_hash_data_by_type},
    {"ny_info_get", &ny_info_get},
};

std::map<std::string, FARPROC> Table() {
    std::map<std::string, FARPROC> table;
    for (const auto& [name, address] : functions) {
        table.emplace(name, address);
    }
    return table;
}

}  // namespace

FARPROC FuzzedFunction(const std::string& name) noexcept {
    static const std::map<std::string, FARPROC> table = Table();
    const auto found = table.find(name);
    return found != table.end() ? found->second : nullptr;
}
