// ny_client.dll of the bare agent: all but policies.
#include "bench/bare/BareAgent.h"
#include "bench/bare/BareHandle.h"

namespace {
BareAgent& agent = *TheBareAgent();
}

int32_t ny_client_handler_create(const char* /*productId*/, ny_client_t** out) {
    *out = AnyHandle<ny_client_t>();
    return NY_OK;
}

int32_t ny_client_handler_start(ny_client_t* /*client*/) {
    return NY_OK;
}

int32_t ny_client_handler_stop(ny_client_t* /*client*/) {
    return NY_OK;
}

int32_t ny_client_handler_release(ny_client_t* /*client*/) {
    return NY_OK;
}

int32_t ny_client_handler_set_thread_option(ny_client_t* /*client*/, uint32_t /*option*/) {
    return NY_OK;
}

int32_t ny_client_handler_set_logger(ny_client_t* /*client*/, ny_logger_t* /*logger*/) {
    return NY_OK;
}

int32_t ny_client_handler_set_logger_callback(ny_client_t* /*client*/, ny_log_callback_t /*callback*/,
                                              void* /*userData*/) {
    return NY_OK;
}

int32_t ny_client_handler_set_msgbus_passphrase_callback(ny_client_t* /*client*/, ny_passphrase_callback_t /*callback*/,
                                                         void* /*userData*/) {
    return NY_OK;
}

int32_t ny_client_handler_get_msgbus(ny_client_t* /*client*/, ny_msgbus_t** out) {
    *out = AnyHandle<ny_msgbus_t>();
    return NY_OK;
}

int32_t ny_client_handler_set_msgbus(ny_client_t* /*client*/, ny_msgbus_t* /*bus*/) {
    return NY_OK;
}

int32_t ny_property_register_provider_callback(ny_client_t* /*client*/, const char* /*productId*/,
                                               ny_property_provider_t provider, void* callbackData) {
    agent.properties = {provider, callbackData};
    if (agent.whenRegistered != nullptr) {
        agent.whenRegistered(agent.whenRegisteredData);
    }
    return NY_OK;
}

int32_t ny_property_unregister_provider_callback(ny_client_t* /*client*/, const char* /*productId*/) {
    agent.properties = {};
    return NY_OK;
}

int32_t ny_property_bag_add_property(ny_property_bag_t* /*bag*/, const char* /*path*/, const char* /*name*/,
                                     ny_variant_t* /*value*/) {
    return NY_OK;
}

int32_t ny_scheduler_register_task_callbacks(ny_client_t* /*client*/, const char* /*productId*/,
                                             const char* /*taskType*/, const ny_task_callbacks_t* callbacks,
                                             void* userData) {
    agent.tasks = {callbacks, userData};
    return NY_OK;
}

int32_t ny_scheduler_unregister_task_callbacks(ny_client_t* /*client*/, const char* /*productId*/,
                                               const char* /*taskType*/) {
    agent.tasks = {};
    return NY_OK;
}

int32_t ny_scheduler_update_task_status(ny_client_t* /*client*/, const char* /*taskId*/, int32_t /*status*/) {
    return NY_OK;
}

int32_t ny_updater_register_callbacks(ny_client_t* /*client*/, const char* /*productId*/,
                                      const ny_updater_callbacks_t* callbacks, void* userData) {
    agent.updates = {callbacks, userData};
    return NY_OK;
}

int32_t ny_updater_unregister_callbacks(ny_client_t* /*client*/, const char* /*productId*/) {
    agent.updates = {};
    return NY_OK;
}

int32_t ny_crypto_encrypt_data_by_type(ny_client_t* /*client*/, uint64_t /*type*/, const unsigned char* /*data*/,
                                       uint32_t /*size*/, ny_buffer_t** /*buffer*/) {
    return NY_OK;
}

int32_t ny_crypto_decrypt_data_by_type(ny_client_t* /*client*/, uint64_t /*type*/, const unsigned char* /*data*/,
                                       uint32_t /*size*/, ny_buffer_t** /*buffer*/) {
    return NY_OK;
}

int32_t ny_crypto_hash_data_by_type(ny_client_t* /*client*/, uint64_t /*type*/, const unsigned char* /*data*/,
                                    uint32_t /*size*/, ny_buffer_t** /*buffer*/) {
    return NY_OK;
}

int32_t ny_info_get(ny_client_t* /*client*/, const char* /*key*/, ny_variant_t** out) {
    *out = HandleOfLength<ny_variant_t>(agent.textLength);
    return NY_OK;
}
