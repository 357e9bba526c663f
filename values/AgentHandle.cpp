#include "values/AgentHandle.h"

#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/VariantGroup.h"

namespace bridge {

ReleaseFunction<ny_buffer_t> FindRelease(const ny_buffer_t* /*kind*/, const LibrariesInUse* inUse) noexcept {
    return agent::ny_buffer_release.Find(inUse);
}

ReleaseFunction<ny_variant_t> FindRelease(const ny_variant_t* /*kind*/, const LibrariesInUse* inUse) noexcept {
    return agent::ny_variant_release.Find(inUse);
}

ReleaseFunction<ny_table_t> FindRelease(const ny_table_t* /*kind*/, const LibrariesInUse* inUse) noexcept {
    return agent::ny_table_release.Find(inUse);
}

ReleaseFunction<ny_array_t> FindRelease(const ny_array_t* /*kind*/, const LibrariesInUse* inUse) noexcept {
    return agent::ny_array_release.Find(inUse);
}

}  // namespace bridge
