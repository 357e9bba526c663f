#pragma once

#include "values/AgentHandle.h"

// The handles of the policy group, as those of values/AgentHandle.h.
bool CanRelease(const ny_policy_uri_t* kind) noexcept;
bool CanRelease(const ny_policy_bag_t* kind) noexcept;
bool CanRelease(const ny_policy_bag_iterator_t* kind) noexcept;
int32_t ReleaseHandle(ny_policy_uri_t* uri) noexcept;
int32_t ReleaseHandle(ny_policy_bag_t* bag) noexcept;
int32_t ReleaseHandle(ny_policy_bag_iterator_t* iterator) noexcept;

using PolicyUriOwner = AgentHandle<ny_policy_uri_t>;
using PolicyBagOwner = AgentHandle<ny_policy_bag_t>;
using PolicyIteratorOwner = AgentHandle<ny_policy_bag_iterator_t>;
