/// @file
/// The products that are registered with the agent, and their services.
#pragma once

#include <string>

#include "ny_simulator.h"
#include "vsmsgbus_testing/Failure.hpp"

namespace vsmsgbus::testing {

/// The services for which the agent may call a product.
enum class Service {
    Properties,  ///< its properties are asked for
    Policies,    ///< it is notified of policies
    Tasks,       ///< it is given tasks
    Updates,     ///< it is told of updates
};

/// Whether the product is registered for the service with any client of the agent. For tasks: for those of every type,
/// as the bridge registers.
inline bool IsRegistered(const std::string& product, Service service) {
    switch (service) {
        case Service::Properties: return ny_sim_has_property_provider(product.c_str()) == 1;
        case Service::Policies: return ny_sim_has_policy_callback(product.c_str()) == 1;
        case Service::Tasks: return ny_sim_has_task_callbacks(product.c_str(), nullptr) == 1;
        case Service::Updates: return ny_sim_has_updater(product.c_str()) == 1;
    }
    return false;
}

namespace detail {

inline const char* NameOf(Service service) {
    switch (service) {
        case Service::Properties: return "properties";
        case Service::Policies: return "policies";
        case Service::Tasks: return "tasks";
        case Service::Updates: return "updates";
    }
    return "?";
}

/// "X is registered for properties, tasks and not for policies, updates", or "... for nothing"
inline std::string DescribeProduct(const std::string& product) {
    std::string those;
    std::string others;
    for (const Service service : {Service::Properties, Service::Policies, Service::Tasks, Service::Updates}) {
        AppendTo(IsRegistered(product, service) ? those : others, NameOf(service));
    }
    std::string text = product + " is registered for " + (those.empty() ? "nothing" : those);
    if (!those.empty() && !others.empty()) {
        text += " and not for " + others;
    }
    return text;
}

/// The other products that are registered, each with what it is registered for.
inline std::string DescribeOtherProducts(const std::string& product) {
    std::string text;
    const char* other = nullptr;
    for (size_t i = 0; ny_sim_get_product(i, &other) == NY_OK; ++i) {
        if (product != other) {
            text += (text.empty() ? "" : "; ") + DescribeProduct(other);
        }
    }
    return text.empty() ? "no other product is registered" : text;
}

}  // namespace detail

}  // namespace vsmsgbus::testing
