#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "simulator/core/policy/Policy.h"

namespace simulator {

// The policies that the agent holds at the moment.
class PolicyStore {
public:
    void Replace(std::vector<PolicyPointer> replacement);
    // The policies of the product for that user, or for the machine when there is no user, in their order.
    std::vector<PolicyPointer> Find(const std::string& softwareId, const PolicyText& user) const;

private:
    mutable std::mutex mutex;
    std::vector<PolicyPointer> policies;
};

// The one store of this process; lives as TheFrame does.
PolicyStore& ThePolicies();

}  // namespace simulator
