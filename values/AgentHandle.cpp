#include "values/AgentHandle.h"

#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/VariantGroup.h"

void ReleaseHandle(ny_buffer_t* buffer) noexcept {
    agent::ny_buffer_release(buffer);
}

void ReleaseHandle(ny_wbuffer_t* buffer) noexcept {
    agent::ny_wbuffer_release(buffer);
}

void ReleaseHandle(ny_variant_t* variant) noexcept {
    agent::ny_variant_release(variant);
}

void ReleaseHandle(ny_table_t* table) noexcept {
    agent::ny_table_release(table);
}

void ReleaseHandle(ny_array_t* array) noexcept {
    agent::ny_array_release(array);
}
