// Group "ny_msgbus" of ny_msgbus.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<50> msgbusNames = {
    "ny_message_create",
    "ny_message_get_message_type",
    "ny_msgbus_set_logger",
    "ny_msgbus_set_passphrase_provider_callback",
    "ny_msgbus_passphrase_digest",
    "ny_msgbus_get_version",
    "ny_msgbus_endpoint_create",
    "ny_msgbus_endpoint_release",
    "ny_msgbus_async_send",
    "ny_msgbus_send",
    "ny_msgbus_send_and_forget",
    "ny_msgbus_request_get_endpoint",
    "ny_msgbus_request_cancel",
    "ny_msgbus_request_release",
    "ny_msgbus_server_create",
    "ny_msgbus_server_release",
    "ny_msgbus_server_start",
    "ny_msgbus_server_stop",
    "ny_msgbus_server_client_request_post_result",
    "ny_msgbus_client_request_add_ref",
    "ny_msgbus_client_request_release",
    "ny_msgbus_subscriber_create",
    "ny_msgbus_subscriber_release",
    "ny_msgbus_subscriber_register",
    "ny_msgbus_subscriber_unregister",
    "ny_msgbus_publish",
    "ny_msgbus_endpoint_vsetopt",
    "ny_msgbus_server_vsetopt",
    "ny_msgbus_subscriber_vsetopt",
    "ny_message_from_variant",
    "ny_message_add_ref",
    "ny_message_release",
    "ny_message_get_timestamp",
    "ny_message_set_property",
    "ny_message_get_property",
    "ny_message_set_payload",
    "ny_message_get_payload",
    "ny_message_clone",
    "ny_message_as_variant",
    "ny_message_get_auth_info",
    "ny_message_auth_info_add_ref",
    "ny_message_auth_info_release",
    "ny_message_auth_info_vgetopt",
    "ny_msgbus_release",
    "ny_msgbus_stop",
    "ny_msgbus_start",
    "ny_msgbus_disable_watcher",
    "ny_msgbus_run",
    "ny_msgbus_create",
    "ny_msgbus_set_connectivity_status_callback",
};

namespace {
constinit Group msgbusGroup{"ny_msgbus", "ny_msgbus.dll", msgbusNames.data(), msgbusNames.size()};
}

namespace agent {

constexpr EntryPoint<&::ny_msgbus_get_version, msgbusNames, msgbusGroup> ny_msgbus_get_version{};
constexpr EntryPoint<&::ny_msgbus_disable_watcher, msgbusNames, msgbusGroup> ny_msgbus_disable_watcher{};

}  // namespace agent

}  // namespace bridge
