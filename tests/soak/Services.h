// The services of the bridge, as the soak names them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "VsMsgbus/Entry.h"

inline constexpr size_t serviceCount = 4;
enum class Service : size_t { Property, Policy, Task, Update };

inline constexpr Service allServices[serviceCount] = {Service::Property, Service::Policy, Service::Task,
                                                      Service::Update};

inline uint32_t MaskOf(Service service) {
    constexpr uint32_t masks[serviceCount] = {VsMsgbusServiceProperty, VsMsgbusServicePolicy, VsMsgbusServiceTask,
                                              VsMsgbusServiceUpdate};
    return masks[static_cast<size_t>(service)];
}

inline const char* NameOf(Service service) {
    constexpr const char* names[serviceCount] = {"collector", "policy enforcer", "task enforcer", "update callback"};
    return names[static_cast<size_t>(service)];
}

inline constexpr uint32_t allServicesMask =
    VsMsgbusServiceProperty | VsMsgbusServicePolicy | VsMsgbusServiceTask | VsMsgbusServiceUpdate;

// The products that the plan has enter and leave.
inline constexpr size_t productCount = 6;

inline std::string ProductId(size_t product) {
    return "PRODUCT" + std::to_string(product);
}
