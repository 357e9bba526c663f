// The border between the four agent libraries and ny_simulator.dll, in plain C: C++ objects do not cross it, because
// every one of these libraries carries a C++ runtime of its own. Not for users of the simulated agent.
//
// An agent function lives in its library and is there as long as that library is loaded; what it does is done here.
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

// `version` is what the calling library's build was made as.
int32_t ny_core_msgbus_get_version(uint32_t* out, uint32_t version);
decltype(ny_msgbus_disable_watcher) ny_core_msgbus_disable_watcher;

decltype(ny_log_v) ny_core_log_v;

}  // extern "C"
