#include "policy/PolicyHandles.h"

#include "dispatcher/groups/PolicyGroup.h"

namespace bridge {

ReleaseFunction<ny_policy_uri_t> FindRelease(const ny_policy_uri_t* /*kind*/, const LibrariesInUse* inUse) noexcept {
    return agent::ny_policy_uri_release.Find(inUse);
}

ReleaseFunction<ny_policy_bag_t> FindRelease(const ny_policy_bag_t* /*kind*/, const LibrariesInUse* inUse) noexcept {
    return agent::ny_policy_bag_release.Find(inUse);
}

ReleaseFunction<ny_policy_bag_iterator_t> FindRelease(const ny_policy_bag_iterator_t* /*kind*/,
                                                      const LibrariesInUse* inUse) noexcept {
    return agent::ny_policy_bag_iterator_release.Find(inUse);
}

}  // namespace bridge
