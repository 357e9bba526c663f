#pragma once

#include "values/AgentHandle.h"

// Gives a handle of the policy group back to the agent, as those of values/AgentHandle.h do.
void ReleaseHandle(ny_policy_uri_t* uri) noexcept;
void ReleaseHandle(ny_policy_bag_t* bag) noexcept;
void ReleaseHandle(ny_policy_bag_iterator_t* iterator) noexcept;

using PolicyUriOwner = AgentHandle<ny_policy_uri_t>;
using PolicyBagOwner = AgentHandle<ny_policy_bag_t>;
using PolicyIteratorOwner = AgentHandle<ny_policy_bag_iterator_t>;
