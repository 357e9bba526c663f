#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "simulator/core/policy/Policy.h"

namespace simulator {

// A uri that a product made says which policies it wants. A uri that an iterator gave names one policy of a bag and has
// that policy's texts.
class PolicyUri {
public:
    PolicyUri() = default;
    PolicyUri(std::shared_ptr<const PolicyBag> bagOfPolicy, PolicyPointer namedPolicy)
        : bag(std::move(bagOfPolicy)), policy(std::move(namedPolicy)) {}

    // Both throw Failure for a uri that an iterator gave.
    void SetSoftwareId(const char* id);
    void SetUser(const char* name);

    // The policies that the product wants. Throws Failure unless a software id was set.
    std::vector<PolicyPointer> Find() const;

    // The text of the policy, null when there is no policy or the policy lacks it.
    const char* Text(PolicyText Policy::*text) const { return policy == nullptr ? nullptr : TextOrNull(*policy.*text); }

    // The policy, which must be one of that bag: throws Failure otherwise.
    const PolicyPointer& PolicyOf(const std::shared_ptr<const PolicyBag>& owner) const;

private:
    const std::shared_ptr<const PolicyBag> bag;
    const PolicyPointer policy;
    mutable std::mutex mutex;
    PolicyText softwareId;
    PolicyText user;
};

}  // namespace simulator
