// Group "ny_variant" (buffers) of ny_variant.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<15> bufferNames = {
    "ny_buffer_get_string", "ny_buffer_get_raw", "ny_buffer_create",   "ny_buffer_add_ref",     "ny_buffer_release",
    "ny_buffer_set",        "ny_buffer_size",    "ny_buffer_is_equal", "ny_wbuffer_create",     "ny_wbuffer_add_ref",
    "ny_wbuffer_release",   "ny_wbuffer_set",    "ny_wbuffer_size",    "ny_wbuffer_get_string", "ny_wbuffer_is_equal",
};

namespace {

constinit Group bufferGroup{"ny_variant", "ny_variant.dll", bufferNames.data(), bufferNames.size()};

template <auto function>
using BufferEntryPoint = EntryPoint<function, bufferNames, bufferGroup>;

}  // namespace

namespace agent {

constexpr BufferEntryPoint<&::ny_buffer_get_string> ny_buffer_get_string{};
constexpr BufferEntryPoint<&::ny_buffer_get_raw> ny_buffer_get_raw{};
constexpr BufferEntryPoint<&::ny_buffer_create> ny_buffer_create{};
constexpr BufferEntryPoint<&::ny_buffer_release> ny_buffer_release{};
constexpr BufferEntryPoint<&::ny_wbuffer_release> ny_wbuffer_release{};
constexpr BufferEntryPoint<&::ny_wbuffer_get_string> ny_wbuffer_get_string{};

}  // namespace agent

}  // namespace bridge
