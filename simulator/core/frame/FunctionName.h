// The agent functions that are simulated.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace simulator {

inline constexpr std::string_view simulatedFunctions[] = {
    // ny_variant.dll
    "ny_buffer_create",
    "ny_buffer_release",
    "ny_buffer_get_string",
    "ny_buffer_get_raw",
    "ny_wbuffer_release",
    "ny_wbuffer_get_string",
    "ny_variant_init",
    "ny_variant_deinit",
    "ny_variant_release",
    "ny_variant_create_from_string",
    "ny_variant_create_from_wstring",
    "ny_variant_get_string_buffer",
    "ny_variant_get_wstring_buffer",
    "ny_variant_get_string",
    "ny_variant_get_table",
    "ny_table_release",
    "ny_table_get_wvalue",
    "ny_table_get_keys",
    "ny_array_release",
    "ny_array_size",
    "ny_array_get_element_at",
    // ny_client.dll
    "ny_client_handler_create",
    "ny_client_handler_start",
    "ny_client_handler_stop",
    "ny_client_handler_release",
    "ny_client_handler_set_thread_option",
    "ny_client_handler_set_logger",
    "ny_client_handler_set_logger_callback",
    "ny_client_handler_set_msgbus_passphrase_callback",
    "ny_client_handler_get_msgbus",
    "ny_client_handler_set_msgbus",
    "ny_property_register_provider_callback",
    "ny_property_unregister_provider_callback",
    "ny_property_bag_add_property",
    "ny_policy_uri_create",
    "ny_policy_uri_release",
    "ny_policy_uri_add_ref",
    "ny_policy_uri_set_software_id",
    "ny_policy_uri_set_user",
    "ny_policy_uri_get_feature",
    "ny_policy_uri_get_category",
    "ny_policy_uri_get_type",
    "ny_policy_uri_get_name",
    "ny_policy_uri_get_pso_digest",
    "ny_policy_uri_get_pso_name",
    "ny_policy_uri_get_pso_param_int",
    "ny_policy_uri_get_pso_param_str",
    "ny_policy_bag_release",
    "ny_policy_bag_get_uri_iterator",
    "ny_policy_bag_get_section_iterator",
    "ny_policy_bag_get_setting_iterator",
    "ny_policy_bag_uri_iterator_get_next",
    "ny_policy_bag_section_iterator_get_next",
    "ny_policy_bag_setting_iterator_get_next",
    "ny_policy_bag_iterator_release",
    "ny_policy_register_notification_callback",
    "ny_policy_unregister_notification_callback",
    "ny_policy_get",
    "ny_policy_enforce",
    "ny_updater_register_callbacks",
    "ny_updater_unregister_callbacks",
    "ny_crypto_encrypt_data_by_type",
    "ny_crypto_decrypt_data_by_type",
    "ny_crypto_hash_data_by_type",
    "ny_info_get",
    "ny_scheduler_register_task_callbacks",
    "ny_scheduler_unregister_task_callbacks",
    "ny_scheduler_update_task_status",
    "ny_task.get_id",
    "ny_task.get_name",
    "ny_task.get_setting",
    "ny_task.get_section",
    "ny_task.get_settings",
    // ny_msgbus.dll
    "ny_msgbus_get_version",
    "ny_msgbus_disable_watcher",
    // ny_logger.dll
    "ny_log_v",
};

constexpr bool IsSimulated(std::string_view function) {
    return std::find(std::begin(simulatedFunctions), std::end(simulatedFunctions), function) !=
           std::end(simulatedFunctions);
}

// The name of a simulated function; any other literal does not compile.
struct FunctionName {
    template <size_t size>
    consteval FunctionName(const char (&literal)[size]) : text(literal) {
        if (!IsSimulated(literal)) {
            throw "simulatedFunctions does not hold this name";
        }
    }

    const char* text;
};

}  // namespace simulator
