// Group "updater" of ny_client.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<32> updaterNames = {
    "ny_updater_register_callbacks",
    "ny_updater_unregister_callbacks",
    "ny_updater_start_update",
    "ny_updater_get_update_state",
    "ny_updater_stop_update",
    "ny_updater_update_request_create",
    "ny_updater_update_request_release",
    "ny_updater_update_request_set_product_list",
    "ny_updater_update_request_get_product_list",
    "ny_updater_update_request_set_locale",
    "ny_updater_update_request_get_locale",
    "ny_updater_update_request_get_type",
    "ny_updater_update_request_set_initiator_type",
    "ny_updater_update_request_set_uioption",
    "ny_updater_update_request_get_uioption",
    "ny_updater_update_request_set_ui_provider_name",
    "ny_updater_update_request_get_ui_provider_name",
    "ny_updater_update_request_get_initiator_type",
    "ny_updater_update_task_create",
    "ny_updater_update_task_set_product_list",
    "ny_updater_update_task_set_locale",
    "ny_updater_event_get_event_id",
    "ny_updater_event_get_severity",
    "ny_updater_event_get_session_id",
    "ny_updater_event_get_product_id",
    "ny_updater_event_get_locale",
    "ny_updater_event_get_update_type",
    "ny_updater_event_get_update_state",
    "ny_updater_event_get_update_error",
    "ny_updater_event_get_new_version",
    "ny_updater_event_get_date_time",
    "ny_updater_event_get_script_id",
};

namespace {
constinit Group updaterGroup{"updater", "ny_client.dll", updaterNames.data(), updaterNames.size()};
}

namespace agent {

constexpr EntryPoint<&::ny_updater_register_callbacks, updaterNames, updaterGroup> ny_updater_register_callbacks{};
constexpr EntryPoint<&::ny_updater_unregister_callbacks, updaterNames, updaterGroup> ny_updater_unregister_callbacks{};

}  // namespace agent

}  // namespace bridge
