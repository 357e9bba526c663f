#include "policy/PolicyHandles.h"

#include "dispatcher/groups/PolicyGroup.h"

void ReleaseHandle(ny_policy_uri_t* uri) noexcept {
    agent::ny_policy_uri_release(uri);
}

void ReleaseHandle(ny_policy_bag_t* bag) noexcept {
    agent::ny_policy_bag_release(bag);
}

void ReleaseHandle(ny_policy_bag_iterator_t* iterator) noexcept {
    agent::ny_policy_bag_iterator_release(iterator);
}
