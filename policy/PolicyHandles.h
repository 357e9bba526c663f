#pragma once

#include "values/AgentHandle.h"

namespace bridge {

// Owners of the handles of the policy group. AgentHandle finds by FindRelease the agent's function that takes a handle
// back; the first argument only chooses the overload, see values/AgentHandle.h.
ReleaseFunction<ny_policy_uri_t> FindRelease(const ny_policy_uri_t* kind, const LibrariesInUse* inUse) noexcept;
ReleaseFunction<ny_policy_bag_t> FindRelease(const ny_policy_bag_t* kind, const LibrariesInUse* inUse) noexcept;
ReleaseFunction<ny_policy_bag_iterator_t> FindRelease(const ny_policy_bag_iterator_t* kind,
                                                      const LibrariesInUse* inUse) noexcept;

using PolicyUriOwner = AgentHandle<ny_policy_uri_t>;
using PolicyBagOwner = AgentHandle<ny_policy_bag_t>;
using PolicyIteratorOwner = AgentHandle<ny_policy_bag_iterator_t>;

}  // namespace bridge
