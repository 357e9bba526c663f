// Handles that count as not taken back by the agent.
#include "soak/LeftHandles.h"

#include <gtest/gtest.h>

#include "../../simulator/core/ny_core.h"
#include "support/AgentCalls.h"

namespace {

constexpr const char* release = "ny_variant_release";

// A test's own handle, which the agent takes back at the end.
class Variant {
public:
    Variant() { EXPECT_EQ(ny_sim_variant_from_json("1", &variant), NY_OK); }
    ~Variant() {
        EXPECT_EQ(ny_core_variant_release(variant), NY_OK);
        ny_sim_reset();
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;

    ny_variant_t* Get() const { return variant; }

private:
    ny_variant_t* variant = nullptr;
};

TEST(LeftHandles, AreThoseWhoseReleaseTheAgentRefused) {
    LeftHandles left;
    left.Check();
    const size_t before = left.Of(NY_SIM_VARIANT);
    const Variant variant;
    ny_sim_fail_call(release, 1, 77, NY_SIM_ONCE);
    EXPECT_EQ(ny_core_variant_release(variant.Get()), 77);
    left.Check();
    EXPECT_EQ(left.Of(NY_SIM_VARIANT), before + 1);
}

TEST(LeftHandles, AreNoNewsWhenTheyWereThereBefore) {
    const Variant variant;
    LeftHandles left;
    EXPECT_EQ(left.Of(NY_SIM_VARIANT), ny_sim_live_handles(NY_SIM_VARIANT));
    left.Check();
}

// The soak clears the record between two operations, while other threads are inside the agent.
TEST(LeftHandles, AreThoseWhoseReleaseWasRefusedAfterItsRecordWasCleared) {
    LeftHandles left;
    left.Check();
    const size_t before = left.Of(NY_SIM_VARIANT);
    const Variant variant;
    {
        const AgentHook hook(release, [] {
            ny_sim_clear_calls();
            ny_sim_fail_call(release, 1, 77, NY_SIM_ONCE);
        });
        EXPECT_EQ(ny_core_variant_release(variant.Get()), 77);
    }
    left.Check();
    EXPECT_EQ(left.Of(NY_SIM_VARIANT), before + 1);
}

}  // namespace
