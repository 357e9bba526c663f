// Group "ny_client_handler" of ny_client.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

// In slot order.
inline constexpr NameTable<14> clientHandlerNames = {
    "ny_client_handler_create",
    "ny_client_handler_start",
    "ny_client_handler_stop",
    "ny_client_handler_release",
    "ny_client_handler_get_context",
    "ny_client_handler_set_thread_option",
    "ny_client_handler_get_thread_option",
    "ny_client_handler_set_consumer_reachability",
    "ny_client_handler_get_consumer_reachability",
    "ny_client_handler_set_logger",
    "ny_client_handler_set_logger_callback",
    "ny_client_handler_set_msgbus_passphrase_callback",
    "ny_client_handler_get_msgbus",
    "ny_client_handler_set_msgbus",
};

namespace {
constinit Group clientHandlerGroup{"ny_client_handler", "ny_client.dll", clientHandlerNames.data(),
                                   clientHandlerNames.size()};
}

namespace agent {

constexpr EntryPoint<&::ny_client_handler_create, clientHandlerNames, clientHandlerGroup> ny_client_handler_create{};
constexpr EntryPoint<&::ny_client_handler_start, clientHandlerNames, clientHandlerGroup> ny_client_handler_start{};
constexpr EntryPoint<&::ny_client_handler_stop, clientHandlerNames, clientHandlerGroup> ny_client_handler_stop{};
constexpr EntryPoint<&::ny_client_handler_release, clientHandlerNames, clientHandlerGroup> ny_client_handler_release{};
constexpr EntryPoint<&::ny_client_handler_set_thread_option, clientHandlerNames, clientHandlerGroup>
    ny_client_handler_set_thread_option{};
constexpr EntryPoint<&::ny_client_handler_set_logger, clientHandlerNames, clientHandlerGroup>
    ny_client_handler_set_logger{};
constexpr EntryPoint<&::ny_client_handler_set_logger_callback, clientHandlerNames, clientHandlerGroup>
    ny_client_handler_set_logger_callback{};
constexpr EntryPoint<&::ny_client_handler_set_msgbus_passphrase_callback, clientHandlerNames, clientHandlerGroup>
    ny_client_handler_set_msgbus_passphrase_callback{};
constexpr EntryPoint<&::ny_client_handler_get_msgbus, clientHandlerNames, clientHandlerGroup>
    ny_client_handler_get_msgbus{};
constexpr EntryPoint<&::ny_client_handler_set_msgbus, clientHandlerNames, clientHandlerGroup>
    ny_client_handler_set_msgbus{};

}  // namespace agent
