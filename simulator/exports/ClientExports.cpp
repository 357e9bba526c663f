// ny_client.dll: the client handler.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_client_handler_create(const char* productId, ny_client_t** out) {
    return ny_core_client_handler_create(productId, out);
}

int32_t ny_client_handler_start(ny_client_t* client) {
    return ny_core_client_handler_start(client);
}

int32_t ny_client_handler_stop(ny_client_t* client) {
    return ny_core_client_handler_stop(client);
}

int32_t ny_client_handler_release(ny_client_t* client) {
    return ny_core_client_handler_release(client);
}

int32_t ny_client_handler_set_thread_option(ny_client_t* client, uint32_t option) {
    return ny_core_client_handler_set_thread_option(client, option);
}

int32_t ny_client_handler_set_logger(ny_client_t* client, ny_logger_t* logger) {
    return ny_core_client_handler_set_logger(client, logger);
}

int32_t ny_client_handler_set_logger_callback(ny_client_t* client, ny_log_callback_t callback, void* userData) {
    return ny_core_client_handler_set_logger_callback(client, callback, userData);
}

int32_t ny_client_handler_set_msgbus_passphrase_callback(ny_client_t* client, ny_passphrase_callback_t callback,
                                                         void* userData) {
    return ny_core_client_handler_set_msgbus_passphrase_callback(client, callback, userData);
}

int32_t ny_client_handler_get_msgbus(ny_client_t* client, ny_msgbus_t** out) {
    return ny_core_client_handler_get_msgbus(client, out);
}

int32_t ny_client_handler_set_msgbus(ny_client_t* client, ny_msgbus_t* bus) {
    return ny_core_client_handler_set_msgbus(client, bus);
}
