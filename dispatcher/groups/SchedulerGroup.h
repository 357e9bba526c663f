// Group "ny_scheduler" of ny_client.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<11> schedulerNames = {
    "ny_scheduler_get_version",
    "ny_scheduler_register_task_callbacks",
    "ny_scheduler_unregister_task_callbacks",
    "ny_scheduler_add_task",
    "ny_scheduler_get_task",
    "ny_scheduler_remove_task",
    "ny_scheduler_alter_task",
    "ny_scheduler_update_task_status",
    "ny_scheduler_enumerate_task",
    "ny_scheduler_enumerate_task_release",
    "ny_scheduler_postpone_task",
};

namespace {

constinit Group schedulerGroup{"ny_scheduler", "ny_client.dll", schedulerNames.data(), schedulerNames.size()};

template <auto function>
using SchedulerEntryPoint = EntryPoint<function, schedulerNames, schedulerGroup>;

}  // namespace

namespace agent {

constexpr SchedulerEntryPoint<&::ny_scheduler_register_task_callbacks> ny_scheduler_register_task_callbacks{};
constexpr SchedulerEntryPoint<&::ny_scheduler_unregister_task_callbacks> ny_scheduler_unregister_task_callbacks{};
constexpr SchedulerEntryPoint<&::ny_scheduler_update_task_status> ny_scheduler_update_task_status{};

}  // namespace agent

}  // namespace bridge
