// The border between the four agent libraries and ny_simulator.dll, in plain C: C++ objects do not cross it, because
// every one of these libraries carries a C++ runtime of its own. Not for users of the simulated agent.
//
// An agent function can be called while its library is loaded. The library's function calls the one declared here.
// Each declaration takes its type from the agent's prototype.
#pragma once

#include "ny_agent.h"

extern "C" {

decltype(ny_buffer_create) ny_core_buffer_create;
decltype(ny_buffer_release) ny_core_buffer_release;
decltype(ny_buffer_get_string) ny_core_buffer_get_string;
decltype(ny_buffer_get_raw) ny_core_buffer_get_raw;
decltype(ny_wbuffer_release) ny_core_wbuffer_release;
decltype(ny_wbuffer_get_string) ny_core_wbuffer_get_string;

decltype(ny_variant_init) ny_core_variant_init;
decltype(ny_variant_deinit) ny_core_variant_deinit;
decltype(ny_variant_release) ny_core_variant_release;
decltype(ny_variant_create_from_string) ny_core_variant_create_from_string;
decltype(ny_variant_create_from_wstring) ny_core_variant_create_from_wstring;
decltype(ny_variant_get_string_buffer) ny_core_variant_get_string_buffer;
decltype(ny_variant_get_wstring_buffer) ny_core_variant_get_wstring_buffer;
decltype(ny_variant_get_string) ny_core_variant_get_string;
decltype(ny_variant_get_table) ny_core_variant_get_table;
decltype(ny_table_release) ny_core_table_release;
decltype(ny_table_get_wvalue) ny_core_table_get_wvalue;
decltype(ny_table_get_keys) ny_core_table_get_keys;
decltype(ny_array_release) ny_core_array_release;
decltype(ny_array_size) ny_core_array_size;
decltype(ny_array_get_element_at) ny_core_array_get_element_at;

decltype(ny_client_handler_create) ny_core_client_handler_create;
decltype(ny_client_handler_start) ny_core_client_handler_start;
decltype(ny_client_handler_stop) ny_core_client_handler_stop;
decltype(ny_client_handler_release) ny_core_client_handler_release;
decltype(ny_client_handler_set_thread_option) ny_core_client_handler_set_thread_option;
decltype(ny_client_handler_set_logger) ny_core_client_handler_set_logger;
decltype(ny_client_handler_set_logger_callback) ny_core_client_handler_set_logger_callback;
decltype(ny_client_handler_set_msgbus_passphrase_callback) ny_core_client_handler_set_msgbus_passphrase_callback;
decltype(ny_client_handler_get_msgbus) ny_core_client_handler_get_msgbus;
decltype(ny_client_handler_set_msgbus) ny_core_client_handler_set_msgbus;

decltype(ny_property_register_provider_callback) ny_core_property_register_provider_callback;
decltype(ny_property_unregister_provider_callback) ny_core_property_unregister_provider_callback;
decltype(ny_property_bag_add_property) ny_core_property_bag_add_property;

decltype(ny_policy_uri_create) ny_core_policy_uri_create;
decltype(ny_policy_uri_release) ny_core_policy_uri_release;
decltype(ny_policy_uri_add_ref) ny_core_policy_uri_add_ref;
decltype(ny_policy_uri_set_software_id) ny_core_policy_uri_set_software_id;
decltype(ny_policy_uri_set_user) ny_core_policy_uri_set_user;
decltype(ny_policy_uri_get_feature) ny_core_policy_uri_get_feature;
decltype(ny_policy_uri_get_category) ny_core_policy_uri_get_category;
decltype(ny_policy_uri_get_type) ny_core_policy_uri_get_type;
decltype(ny_policy_uri_get_name) ny_core_policy_uri_get_name;
decltype(ny_policy_uri_get_pso_digest) ny_core_policy_uri_get_pso_digest;
decltype(ny_policy_uri_get_pso_name) ny_core_policy_uri_get_pso_name;
decltype(ny_policy_uri_get_pso_param_int) ny_core_policy_uri_get_pso_param_int;
decltype(ny_policy_uri_get_pso_param_str) ny_core_policy_uri_get_pso_param_str;
decltype(ny_policy_bag_release) ny_core_policy_bag_release;
decltype(ny_policy_bag_get_uri_iterator) ny_core_policy_bag_get_uri_iterator;
decltype(ny_policy_bag_get_section_iterator) ny_core_policy_bag_get_section_iterator;
decltype(ny_policy_bag_get_setting_iterator) ny_core_policy_bag_get_setting_iterator;
decltype(ny_policy_bag_uri_iterator_get_next) ny_core_policy_bag_uri_iterator_get_next;
decltype(ny_policy_bag_section_iterator_get_next) ny_core_policy_bag_section_iterator_get_next;
decltype(ny_policy_bag_setting_iterator_get_next) ny_core_policy_bag_setting_iterator_get_next;
decltype(ny_policy_bag_iterator_release) ny_core_policy_bag_iterator_release;
decltype(ny_policy_register_notification_callback) ny_core_policy_register_notification_callback;
decltype(ny_policy_unregister_notification_callback) ny_core_policy_unregister_notification_callback;
decltype(ny_policy_get) ny_core_policy_get;
decltype(ny_policy_enforce) ny_core_policy_enforce;
// `accessors` are those of the calling library: what the task objects of this registration are given.
int32_t ny_core_scheduler_register_task_callbacks(ny_client_t* client, const char* productId, const char* taskType,
                                                  const ny_task_callbacks_t* callbacks, void* userData,
                                                  const ny_task_methods_t* accessors);
decltype(ny_scheduler_unregister_task_callbacks) ny_core_scheduler_unregister_task_callbacks;
decltype(ny_scheduler_update_task_status) ny_core_scheduler_update_task_status;
int32_t ny_core_task_get_id(ny_task_t* task, const char** id);
int32_t ny_core_task_get_name(ny_task_t* task, const char** name);
int32_t ny_core_task_get_setting(ny_task_t* task, const char* section, const char* name, ny_variant_t** out);
int32_t ny_core_task_get_section(ny_task_t* task, const char* section, ny_variant_t** out);
int32_t ny_core_task_get_settings(ny_task_t* task, ny_variant_t** out);

decltype(ny_updater_register_callbacks) ny_core_updater_register_callbacks;
decltype(ny_updater_unregister_callbacks) ny_core_updater_unregister_callbacks;

decltype(ny_crypto_encrypt_data_by_type) ny_core_crypto_encrypt_data_by_type;
decltype(ny_crypto_decrypt_data_by_type) ny_core_crypto_decrypt_data_by_type;
decltype(ny_crypto_hash_data_by_type) ny_core_crypto_hash_data_by_type;
decltype(ny_info_get) ny_core_info_get;

// `version` is that of the calling library's build.
int32_t ny_core_msgbus_get_version(uint32_t* out, uint32_t version);
decltype(ny_msgbus_disable_watcher) ny_core_msgbus_disable_watcher;

decltype(ny_log_v) ny_core_log_v;

// For tests: the ny_sim_handle_kind of a handle, NY_SIM_ANY when it is not alive.
int32_t ny_core_handle_kind(const void* handle);

}  // extern "C"
