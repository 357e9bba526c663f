#include "values/AgentHandle.h"

#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/VariantGroup.h"

bool CanRelease(const ny_buffer_t* /*kind*/) noexcept {
    return EnsureGroup(bufferGroup);
}

bool CanRelease(const ny_variant_t* /*kind*/) noexcept {
    return EnsureGroup(variantGroup);
}

bool CanRelease(const ny_table_t* /*kind*/) noexcept {
    return EnsureGroup(variantGroup);
}

bool CanRelease(const ny_array_t* /*kind*/) noexcept {
    return EnsureGroup(variantGroup);
}

int32_t ReleaseHandle(ny_buffer_t* buffer) noexcept {
    return agent::ny_buffer_release(buffer);
}

int32_t ReleaseHandle(ny_wbuffer_t* buffer) noexcept {
    return agent::ny_wbuffer_release(buffer);
}

int32_t ReleaseHandle(ny_variant_t* variant) noexcept {
    return agent::ny_variant_release(variant);
}

int32_t ReleaseHandle(ny_table_t* table) noexcept {
    return agent::ny_table_release(table);
}

int32_t ReleaseHandle(ny_array_t* array) noexcept {
    return agent::ny_array_release(array);
}
