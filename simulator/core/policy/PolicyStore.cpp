#include "simulator/core/policy/PolicyStore.h"

#include <algorithm>
#include <iterator>

namespace simulator {

namespace {

PolicyStore& thePolicies = *new PolicyStore;

}  // namespace

void PolicyStore::Replace(std::vector<PolicyPointer> replacement) {
    const std::lock_guard lock(mutex);
    policies.swap(replacement);
}

std::vector<PolicyPointer> PolicyStore::Find(const std::string& softwareId, const PolicyText& user) const {
    std::vector<PolicyPointer> found;
    const std::lock_guard lock(mutex);
    std::copy_if(policies.begin(), policies.end(), std::back_inserter(found),
                 [&](const PolicyPointer& policy) { return policy->softwareId == softwareId && policy->user == user; });
    return found;
}

PolicyStore& ThePolicies() {
    return thePolicies;
}

}  // namespace simulator
