#include "support/KeptHandles.h"

#include <gtest/gtest.h>

#include "../../simulator/core/ny_core.h"
#include "ny_simulator.h"

namespace {

// Handles are numbers that ascend in these steps.
constexpr uintptr_t handleSpacing = 16;

// A handle newer than all others.
uintptr_t NewestHandle() {
    ny_variant_t* variant = nullptr;
    EXPECT_EQ(ny_sim_variant_from_json("\"newest\"", &variant), NY_OK);
    EXPECT_EQ(ny_core_variant_release(variant), NY_OK);
    return reinterpret_cast<uintptr_t>(variant);
}

// An object that the agent handed out several times has one handle, which is released as often.
template <class Handle>
size_t ReleaseAll(void* handle, int32_t (*release)(Handle*)) {
    size_t released = 0;
    const int32_t kind = ny_core_handle_kind(handle);
    while (ny_core_handle_kind(handle) == kind && release(static_cast<Handle*>(handle)) == NY_OK) {
        ++released;
    }
    return released;
}

// Asks for the handle's kind first, which finds a dead handle without a call that the agent would count as a misuse.
size_t ReleaseIfAlive(void* handle) {
    switch (ny_core_handle_kind(handle)) {
        case NY_SIM_CLIENT: return ReleaseAll(handle, ny_core_client_handler_release);
        case NY_SIM_VARIANT: return ReleaseAll(handle, ny_core_variant_release);
        case NY_SIM_BUFFER: return ReleaseAll(handle, ny_core_buffer_release);
        case NY_SIM_WBUFFER: return ReleaseAll(handle, ny_core_wbuffer_release);
        case NY_SIM_TABLE: return ReleaseAll(handle, ny_core_table_release);
        case NY_SIM_ARRAY: return ReleaseAll(handle, ny_core_array_release);
        case NY_SIM_POLICY_ITERATOR: return ReleaseAll(handle, ny_core_policy_bag_iterator_release);
        case NY_SIM_POLICY_URI: return ReleaseAll(handle, ny_core_policy_uri_release);
        case NY_SIM_POLICY_BAG: return ReleaseAll(handle, ny_core_policy_bag_release);
        default: return 0;
    }
}

}  // namespace

KeptHandles::KeptHandles() : before(NewestHandle()) {}

size_t KeptHandles::Release() {
    EXPECT_EQ(ny_sim_misuse_count(), 0U) << ny_sim_last_misuse();
    ny_sim_clear_faults();
    size_t released = 0;
    const uintptr_t after = NewestHandle();
    for (uintptr_t handle = before + handleSpacing; handle < after; handle += handleSpacing) {
        released += ReleaseIfAlive(reinterpret_cast<void*>(handle));
    }
    ny_sim_reset();
    return released;
}
