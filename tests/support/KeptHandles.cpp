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
size_t ReleaseIfAlive(uintptr_t handle, int32_t (*release)(Handle*)) {
    size_t released = 0;
    while (release(reinterpret_cast<Handle*>(handle)) == NY_OK) {
        ++released;
    }
    return released;
}

}  // namespace

KeptHandles::KeptHandles() : before(NewestHandle()) {}

size_t KeptHandles::Release() {
    EXPECT_EQ(ny_sim_misuse_count(), 0U) << ny_sim_last_misuse();
    ny_sim_clear_faults();
    size_t released = 0;
    const uintptr_t after = NewestHandle();
    for (uintptr_t handle = before + handleSpacing; handle < after; handle += handleSpacing) {
        released += ReleaseIfAlive(handle, ny_core_client_handler_release);
        released += ReleaseIfAlive(handle, ny_core_variant_release);
        released += ReleaseIfAlive(handle, ny_core_buffer_release);
        released += ReleaseIfAlive(handle, ny_core_wbuffer_release);
        released += ReleaseIfAlive(handle, ny_core_policy_bag_iterator_release);
        released += ReleaseIfAlive(handle, ny_core_policy_uri_release);
        released += ReleaseIfAlive(handle, ny_core_policy_bag_release);
        released += ReleaseIfAlive(handle, ny_core_table_release);
        released += ReleaseIfAlive(handle, ny_core_array_release);
    }
    ny_sim_reset();
    return released;
}
