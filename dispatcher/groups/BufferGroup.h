// Group "ny_variant" (buffers) of ny_variant.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

// In slot order.
inline constexpr NameTable<15> bufferNames = {
    "ny_buffer_get_string", "ny_buffer_get_raw", "ny_buffer_create",   "ny_buffer_add_ref",     "ny_buffer_release",
    "ny_buffer_set",        "ny_buffer_size",    "ny_buffer_is_equal", "ny_wbuffer_create",     "ny_wbuffer_add_ref",
    "ny_wbuffer_release",   "ny_wbuffer_set",    "ny_wbuffer_size",    "ny_wbuffer_get_string", "ny_wbuffer_is_equal",
};

namespace {
constinit Group bufferGroup{"ny_variant", "ny_variant.dll", bufferNames.data(), bufferNames.size()};
}

namespace agent {

constexpr EntryPoint<&::ny_buffer_get_string, bufferNames, bufferGroup> ny_buffer_get_string{};
constexpr EntryPoint<&::ny_buffer_get_raw, bufferNames, bufferGroup> ny_buffer_get_raw{};
constexpr EntryPoint<&::ny_buffer_create, bufferNames, bufferGroup> ny_buffer_create{};
constexpr EntryPoint<&::ny_buffer_release, bufferNames, bufferGroup> ny_buffer_release{};
constexpr EntryPoint<&::ny_wbuffer_release, bufferNames, bufferGroup> ny_wbuffer_release{};
constexpr EntryPoint<&::ny_wbuffer_get_string, bufferNames, bufferGroup> ny_wbuffer_get_string{};

}  // namespace agent
