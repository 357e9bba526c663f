// The agent's C interface: handle types, result codes and prototypes of every agent function that this project calls
// or simulates. Nothing here is linked: the bridge resolves these functions by name at run time, and the simulated
// agent defines them.
//
// Conventions
//  1. C linkage, the platform's 64-bit calling convention. Every function returns int32_t: NY_OK or a code.
//  2. Handles are opaque. Out parameters are written only on success.
//  3. "owned": the caller releases it with the matching _release function. "borrowed": valid until its parent is
//     released or, for an iterator's items, until the next get_next or the iterator's release.
//  4. Narrow text is zero-terminated UTF-8, wide text zero-terminated UTF-16. Lengths are in characters without the
//     terminator.
//  5. A callback returns int32_t to the agent and runs on a thread of the agent's.
//  6. Releasing a client ends every registration that was made with it.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>

extern "C" {

// --- Result codes -------------------------------------------------------------------------------------------------

enum : int32_t {
    NY_OK = 0,
    NY_INVALID_ARGUMENT = 1,  // also: an object that is needed is absent
    NY_UNEXPECTED = 3,        // an operation slot is empty, or a callback failed for a reason of its own
    NY_OUT_OF_MEMORY = 4,
    NY_ITERATOR_END = 14,           // an iterator is exhausted
    NY_ALREADY_EXISTS = 18,         // an io kind is already present
    NY_DISPATCHER_INIT = 701,       // the dispatcher could not be initialised
    NY_LIBRARY_LOAD = 703,          // a library could not be loaded
    NY_LIBRARY_UNLOAD = 704,        // a library could not be unloaded
    NY_FUNCTION_MISSING = 705,      // an agent function cannot be reached
    NY_RUNTIME_PATH_MISSING = 706,  // the runtime path is not in the registry
};

// --- Handles ------------------------------------------------------------------------------------------------------

typedef struct ny_buffer ny_buffer_t;
typedef struct ny_wbuffer ny_wbuffer_t;
typedef struct ny_variant ny_variant_t;
typedef struct ny_table ny_table_t;
typedef struct ny_array ny_array_t;
typedef struct ny_client ny_client_t;
typedef struct ny_msgbus ny_msgbus_t;
typedef struct ny_logger ny_logger_t;
typedef struct ny_property_bag ny_property_bag_t;
typedef struct ny_policy_uri ny_policy_uri_t;
typedef struct ny_policy_bag ny_policy_bag_t;
typedef struct ny_policy_bag_iterator ny_policy_bag_iterator_t;
typedef struct ny_task ny_task_t;
typedef struct ny_updater_event ny_updater_event_t;

// --- ny_variant.dll: buffers --------------------------------------------------------------------------------------

int32_t ny_buffer_create(ny_buffer_t** out, size_t size);  // owned
int32_t ny_buffer_release(ny_buffer_t* buffer);
int32_t ny_buffer_get_string(ny_buffer_t* buffer, const char** text, size_t* length);      // text borrowed
int32_t ny_buffer_get_raw(ny_buffer_t* buffer, const unsigned char** data, size_t* size);  // data borrowed
int32_t ny_wbuffer_release(ny_wbuffer_t* buffer);
int32_t ny_wbuffer_get_string(ny_wbuffer_t* buffer, const wchar_t** text, size_t* length);  // text borrowed

// --- ny_variant.dll: variants, tables, arrays ---------------------------------------------------------------------

int32_t ny_variant_init(void);
int32_t ny_variant_deinit(void);
int32_t ny_variant_release(ny_variant_t* variant);
int32_t ny_variant_create_from_string(const char* text, size_t length, ny_variant_t** out);      // owned
int32_t ny_variant_create_from_wstring(const wchar_t* text, size_t length, ny_variant_t** out);  // owned
int32_t ny_variant_get_string_buffer(ny_variant_t* variant, ny_buffer_t** out);    // owned; wide text as UTF-8
int32_t ny_variant_get_wstring_buffer(ny_variant_t* variant, ny_wbuffer_t** out);  // owned; narrow text as UTF-16
int32_t ny_variant_get_string(ny_variant_t* variant, const char** text, size_t* length);  // text borrowed
int32_t ny_variant_get_table(ny_variant_t* variant, ny_table_t** out);                    // owned
int32_t ny_table_release(ny_table_t* table);
int32_t ny_table_get_wvalue(ny_table_t* table, const wchar_t* key, ny_variant_t** out);  // owned
int32_t ny_table_get_keys(ny_table_t* table, ny_array_t** out);  // owned, an array of text variants
int32_t ny_array_release(ny_array_t* array);
int32_t ny_array_size(ny_array_t* array, size_t* out);
int32_t ny_array_get_element_at(ny_array_t* array, size_t index, ny_variant_t** out);  // owned, index from 0

// --- ny_client.dll: client handler --------------------------------------------------------------------------------

typedef int32_t (*ny_log_callback_t)(uint32_t severity, const char* module, const char* message, void* userData);
typedef int32_t (*ny_passphrase_callback_t)(ny_msgbus_t* bus, unsigned char* passphrase, size_t* size, void* userData);

int32_t ny_client_handler_create(const char* productId, ny_client_t** out);  // owned
int32_t ny_client_handler_start(ny_client_t* client);
int32_t ny_client_handler_stop(ny_client_t* client);
int32_t ny_client_handler_release(ny_client_t* client);
int32_t ny_client_handler_set_thread_option(ny_client_t* client, uint32_t option);
int32_t ny_client_handler_set_logger(ny_client_t* client, ny_logger_t* logger);
int32_t ny_client_handler_set_logger_callback(ny_client_t* client, ny_log_callback_t callback, void* userData);
int32_t ny_client_handler_set_msgbus_passphrase_callback(ny_client_t* client, ny_passphrase_callback_t callback,
                                                         void* userData);
int32_t ny_client_handler_get_msgbus(ny_client_t* client, ny_msgbus_t** out);  // borrowed from the client
int32_t ny_client_handler_set_msgbus(ny_client_t* client, ny_msgbus_t* bus);

// --- ny_client.dll: properties ------------------------------------------------------------------------------------

typedef int32_t (*ny_property_provider_t)(ny_client_t* client, const char* productId, ny_property_bag_t* bag,
                                          void* callbackData);

int32_t ny_property_register_provider_callback(ny_client_t* client, const char* productId,
                                               ny_property_provider_t provider, void* callbackData);
// Returns only when no callback of the product runs on another thread.
int32_t ny_property_unregister_provider_callback(ny_client_t* client, const char* productId);
// The bag keeps its own reference on the value.
int32_t ny_property_bag_add_property(ny_property_bag_t* bag, const char* path, const char* name, ny_variant_t* value);

// --- ny_client.dll: policies --------------------------------------------------------------------------------------

typedef int32_t (*ny_policy_callback_t)(ny_client_t* client, const char* productId, ny_policy_uri_t* uri,
                                        void* callbackData);

int32_t ny_policy_uri_create(ny_policy_uri_t** out);  // owned
int32_t ny_policy_uri_add_ref(ny_policy_uri_t* uri);
int32_t ny_policy_uri_release(ny_policy_uri_t* uri);
int32_t ny_policy_uri_set_software_id(ny_policy_uri_t* uri, const char* id);
int32_t ny_policy_uri_set_user(ny_policy_uri_t* uri, const char* user);
// Each text is borrowed; a text that the policy lacks comes as null with NY_OK.
int32_t ny_policy_uri_get_feature(ny_policy_uri_t* uri, const char** text);
int32_t ny_policy_uri_get_category(ny_policy_uri_t* uri, const char** text);
int32_t ny_policy_uri_get_type(ny_policy_uri_t* uri, const char** text);
int32_t ny_policy_uri_get_name(ny_policy_uri_t* uri, const char** text);
int32_t ny_policy_uri_get_pso_name(ny_policy_uri_t* uri, const char** text);
int32_t ny_policy_uri_get_pso_param_int(ny_policy_uri_t* uri, const char** text);
int32_t ny_policy_uri_get_pso_param_str(ny_policy_uri_t* uri, const char** text);
int32_t ny_policy_uri_get_pso_digest(ny_policy_uri_t* uri, const char** text);
int32_t ny_policy_get(ny_client_t* client, ny_policy_uri_t* uri, ny_policy_bag_t** out);  // owned
int32_t ny_policy_bag_release(ny_policy_bag_t* bag);
int32_t ny_policy_bag_get_uri_iterator(ny_policy_bag_t* bag, ny_policy_bag_iterator_t** out);  // owned
int32_t ny_policy_bag_get_section_iterator(ny_policy_bag_t* bag, ny_policy_uri_t* uri,
                                           ny_policy_bag_iterator_t** out);  // owned
int32_t ny_policy_bag_get_setting_iterator(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* section,
                                           ny_policy_bag_iterator_t** out);  // owned
// The items of the three iterators are borrowed; NY_ITERATOR_END after the last one.
int32_t ny_policy_bag_uri_iterator_get_next(ny_policy_bag_iterator_t* iterator, ny_policy_uri_t** uri);
int32_t ny_policy_bag_section_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** section);
int32_t ny_policy_bag_setting_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** name,
                                                ny_variant_t** value);
int32_t ny_policy_bag_iterator_release(ny_policy_bag_iterator_t* iterator);
int32_t ny_policy_register_notification_callback(ny_client_t* client, const char* productId, uint32_t mask,
                                                 ny_policy_callback_t callback, void* callbackData);
int32_t ny_policy_unregister_notification_callback(ny_client_t* client, const char* productId);
int32_t ny_policy_enforce(ny_client_t* client, const char* productId);

// --- ny_client.dll: scheduler -------------------------------------------------------------------------------------

// A task as its callbacks see it, borrowed during the call. Any method may be null: a task without that accessor.
typedef struct ny_task_methods {
    int32_t (*get_id)(ny_task_t* task, const char** id);                                                 // borrowed
    int32_t (*get_name)(ny_task_t* task, const char** name);                                             // borrowed
    int32_t (*get_setting)(ny_task_t* task, const char* section, const char* name, ny_variant_t** out);  // owned
    int32_t (*get_section)(ny_task_t* task, const char* section, ny_variant_t** out);  // owned, a table: name to value
    int32_t (*get_settings)(ny_task_t* task, ny_variant_t** out);  // owned, a table with one key per section
} ny_task_methods_t;

struct ny_task {
    const ny_task_methods_t* methods;
};

typedef int32_t (*ny_task_callback_t)(ny_client_t* client, const char* productId, const char* taskType, ny_task_t* task,
                                      void* userData);

typedef struct ny_task_callbacks {
    ny_task_callback_t execute;
    ny_task_callback_t stop;
    ny_task_callback_t remove;
    ny_task_callback_t update_status;
} ny_task_callbacks_t;

// A null taskType stands for every type.
int32_t ny_scheduler_register_task_callbacks(ny_client_t* client, const char* productId, const char* taskType,
                                             const ny_task_callbacks_t* callbacks, void* userData);
int32_t ny_scheduler_unregister_task_callbacks(ny_client_t* client, const char* productId, const char* taskType);
int32_t ny_scheduler_update_task_status(ny_client_t* client, const char* taskId, int32_t status);

// --- ny_client.dll: updater ---------------------------------------------------------------------------------------

typedef struct ny_updater_callbacks {
    int32_t (*update_notify)(ny_client_t* client, const char* productId, const char* second, const char* third,
                             uint32_t number, const char* fourth, int32_t* result, void* userData);
    int32_t (*set_product_info)(ny_client_t* client, const char* productId, const char* second, const char* key,
                                ny_variant_t* value, int32_t* result, void* userData);
    int32_t (*get_product_info)(ny_client_t* client, const char* productId, const char* second, const char* key,
                                ny_variant_t** out, int32_t* result, void* userData);  // the agent owns out
    int32_t (*event)(ny_client_t* client, const char* productId, const ny_updater_event_t* event, void* userData);
} ny_updater_callbacks_t;

int32_t ny_updater_register_callbacks(ny_client_t* client, const char* productId,
                                      const ny_updater_callbacks_t* callbacks, void* userData);
int32_t ny_updater_unregister_callbacks(ny_client_t* client, const char* productId);

// --- ny_client.dll: crypto and information ------------------------------------------------------------------------

// The caller's buffer comes in, is filled, and may be replaced (the agent then releases the old one).
int32_t ny_crypto_encrypt_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data, uint32_t size,
                                       ny_buffer_t** buffer);
int32_t ny_crypto_decrypt_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data, uint32_t size,
                                       ny_buffer_t** buffer);
int32_t ny_crypto_hash_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data, uint32_t size,
                                    ny_buffer_t** buffer);
int32_t ny_info_get(ny_client_t* client, const char* key, ny_variant_t** out);  // owned

// --- ny_msgbus.dll ------------------------------------------------------------------------------------------------

int32_t ny_msgbus_get_version(uint32_t* out);
int32_t ny_msgbus_disable_watcher(ny_msgbus_t* bus);

// --- ny_logger.dll ------------------------------------------------------------------------------------------------

// The agent prints what the format and its arguments give; a text that may hold percent signs is an argument.
int32_t ny_log_v(ny_logger_t* logger, uint32_t severity, const char* module, const char* file, uint32_t line,
                 const char* function, const char* format, va_list arguments);

}  // extern "C"
