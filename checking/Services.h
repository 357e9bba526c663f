// The names and sizes that the checks need of each service.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "VsMsgbus/Entry.h"

namespace checking {

struct ServiceText {
    uint32_t bit;
    const char* bitName;
    const char* noun;  // of the interface that a module registers
    const char* set;
    const char* remove;
    size_t slots;  // of the interface
};

enum ServiceIndex : size_t { Property, Policy, Task, Update };

inline constexpr std::array<ServiceText, 4> services = {{
    {VsMsgbusServiceProperty, "VsMsgbusServiceProperty", "collector", "VsKitMsgbusSetCollectProperties",
     "VsKitMsgbusRemoveCollectProperties", 2},
    {VsMsgbusServicePolicy, "VsMsgbusServicePolicy", "policy enforcer", "VsKitMsgbusSetEnforcePolicy",
     "VsKitMsgbusRemoveEnforcerPolicy", 3},
    {VsMsgbusServiceTask, "VsMsgbusServiceTask", "task enforcer", "VsKitMsgbusSetTaskEnforcer",
     "VsKitMsgbusRemoveTaskEnforcer", 5},
    {VsMsgbusServiceUpdate, "VsMsgbusServiceUpdate", "update callback", "VsKitMsgbusSetUpdateNotify",
     "VsKitMsgbusRemoveUpdateNotify", 3},
}};

inline constexpr uint32_t allServices =
    VsMsgbusServiceProperty | VsMsgbusServicePolicy | VsMsgbusServiceTask | VsMsgbusServiceUpdate;

}  // namespace checking
