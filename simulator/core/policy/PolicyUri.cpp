#include "simulator/core/policy/PolicyUri.h"

#include "simulator/core/frame/Failure.h"
#include "simulator/core/policy/PolicyStore.h"

namespace simulator {

void PolicyUri::SetSoftwareId(const char* id) {
    Require(id != nullptr && policy == nullptr);
    const std::lock_guard lock(mutex);
    softwareId = id;
}

void PolicyUri::SetUser(const char* name) {
    Require(name != nullptr && policy == nullptr);
    const std::lock_guard lock(mutex);
    user = name;
}

std::vector<PolicyPointer> PolicyUri::Find() const {
    const std::lock_guard lock(mutex);
    Require(softwareId.has_value());
    return ThePolicies().Find(*softwareId, user);
}

const PolicyPointer& PolicyUri::PolicyOf(const std::shared_ptr<const PolicyBag>& owner) const {
    Require(policy != nullptr && bag == owner);
    return policy;
}

}  // namespace simulator
