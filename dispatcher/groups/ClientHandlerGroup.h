// Group "ny_client_handler" of ny_client.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

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

template <auto function>
using ClientHandlerEntryPoint = EntryPoint<function, clientHandlerNames, clientHandlerGroup>;

}  // namespace

namespace agent {

constexpr ClientHandlerEntryPoint<&::ny_client_handler_create> ny_client_handler_create{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_start> ny_client_handler_start{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_stop> ny_client_handler_stop{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_release> ny_client_handler_release{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_set_thread_option> ny_client_handler_set_thread_option{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_set_logger> ny_client_handler_set_logger{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_set_logger_callback> ny_client_handler_set_logger_callback{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_set_msgbus_passphrase_callback>
    ny_client_handler_set_msgbus_passphrase_callback{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_get_msgbus> ny_client_handler_get_msgbus{};
constexpr ClientHandlerEntryPoint<&::ny_client_handler_set_msgbus> ny_client_handler_set_msgbus{};

}  // namespace agent

}  // namespace bridge
