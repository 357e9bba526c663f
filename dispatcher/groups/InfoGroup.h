// Group "ny_info" of ny_client.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<3> infoNames = {
    "ny_info_events_register_callback",
    "ny_info_events_unregister_callback",
    "ny_info_get",
};

namespace {
constinit Group infoGroup{"ny_info", "ny_client.dll", infoNames.data(), infoNames.size()};
}

namespace agent {

constexpr EntryPoint<&::ny_info_get, infoNames, infoGroup> ny_info_get{};

}  // namespace agent

}  // namespace bridge
