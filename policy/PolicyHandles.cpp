#include "policy/PolicyHandles.h"

#include "dispatcher/groups/PolicyGroup.h"

bool CanRelease(const ny_policy_uri_t* /*kind*/) noexcept {
    return EnsureGroup(policyGroup);
}

bool CanRelease(const ny_policy_bag_t* /*kind*/) noexcept {
    return EnsureGroup(policyGroup);
}

bool CanRelease(const ny_policy_bag_iterator_t* /*kind*/) noexcept {
    return EnsureGroup(policyGroup);
}

int32_t ReleaseHandle(ny_policy_uri_t* uri) noexcept {
    return agent::ny_policy_uri_release(uri);
}

int32_t ReleaseHandle(ny_policy_bag_t* bag) noexcept {
    return agent::ny_policy_bag_release(bag);
}

int32_t ReleaseHandle(ny_policy_bag_iterator_t* iterator) noexcept {
    return agent::ny_policy_bag_iterator_release(iterator);
}
