/// @file
/// Handles and registrations of the agent's that a module has left behind.
#pragma once

#include <string>
#include <utility>

#include "ny_simulator.h"
#include "vsmsgbus_testing/Failure.hpp"
#include "vsmsgbus_testing/Registrations.hpp"

namespace vsmsgbus::testing {

namespace detail {

/// "2 handles are alive (1 client, 1 property bag)"
inline std::string DescribeHandles() {
    constexpr std::pair<ny_sim_handle_kind, const char*> kinds[] = {
        {NY_SIM_BUFFER, "buffer"},
        {NY_SIM_WBUFFER, "wide buffer"},
        {NY_SIM_VARIANT, "variant"},
        {NY_SIM_TABLE, "table"},
        {NY_SIM_ARRAY, "array"},
        {NY_SIM_CLIENT, "client"},
        {NY_SIM_PROPERTY_BAG, "property bag"},
        {NY_SIM_LOGGER, "logger"},
        {NY_SIM_POLICY_URI, "policy uri"},
        {NY_SIM_POLICY_BAG, "policy bag"},
        {NY_SIM_POLICY_ITERATOR, "policy iterator"},
    };
    std::string those;
    for (const auto& [kind, name] : kinds) {
        if (const size_t count = ny_sim_live_handles(kind); count != 0) {
            AppendTo(those, Counted(count, name, std::string(name) + 's'));
        }
    }
    return Counted(ny_sim_live_handles(NY_SIM_ANY), "handle is", "handles are") + " alive (" + those + ")";
}

}  // namespace detail

/// A text about everything of the agent's that is left: products that are registered, clients that have started,
/// handles that were not released, tasks that are lent to a callback, and uses of handles after their end. Empty when
/// there is nothing. Misuses are counted from the beginning of the Machine.
inline std::string WhatIsLeft() {
    std::string left;
    const auto add = [&](const std::string& text) { left += (left.empty() ? "" : "; ") + text; };
    const char* product = nullptr;
    for (size_t i = 0; ny_sim_get_product(i, &product) == NY_OK; ++i) {
        add(detail::DescribeProduct(product));
    }
    if (const size_t clients = ny_sim_started_clients(); clients != 0) {
        add(detail::Counted(clients, "client has", "clients have") + " started");
    }
    if (ny_sim_live_handles(NY_SIM_ANY) != 0) {
        add(detail::DescribeHandles());
    }
    if (const size_t tasks = ny_sim_lent_tasks(); tasks != 0) {
        add(detail::Counted(tasks, "task is", "tasks are") + " lent to a callback");
    }
    if (const size_t misuses = ny_sim_misuse_count(); misuses != 0) {
        add("the agent was misused " + detail::Counted(misuses, "time", "times") + ", at last " + ny_sim_last_misuse());
    }
    return left;
}

}  // namespace vsmsgbus::testing
