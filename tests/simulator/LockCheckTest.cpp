// Callers that hold locks of their own.
#include "simulator/SimulatorTest.h"
#include "support/HeldLocks.h"

namespace {

class LockCheck : public SimulatorTest {
protected:
    ~LockCheck() override { ny_sim_set_held_locks(&HeldLocks); }
};

TEST_F(LockCheck, CountsCallsOfThreadsThatHoldLocksAsMisuse) {
    ny_sim_set_held_locks([] { return size_t{2}; });
    EXPECT_EQ(Call<&ny_variant_init>(), NY_OK);
    EXPECT_EQ(ny_sim_misuse_count(), 1U);
    EXPECT_STREQ(ny_sim_last_misuse(), "ny_variant_init: the calling thread holds 2 of its locks");
    EXPECT_EQ(Call<&ny_variant_deinit>(), NY_OK);
    EXPECT_EQ(ny_sim_misuse_count(), 2U);
    ny_sim_reset();
    EXPECT_EQ(Call<&ny_variant_init>(), NY_OK);
    EXPECT_EQ(ny_sim_misuse_count(), 1U) << "it stays over a reset";
    ny_sim_reset();
}

TEST_F(LockCheck, AsksNothingWithoutAFunctionToAsk) {
    ny_sim_set_held_locks(nullptr);
    EXPECT_EQ(Call<&ny_variant_init>(), NY_OK);
    EXPECT_EQ(ny_sim_misuse_count(), 0U);
}

TEST_F(LockCheck, FindsNothingAgainstThreadsThatHoldNone) {
    ny_sim_set_held_locks([] { return size_t{0}; });
    EXPECT_EQ(Call<&ny_variant_init>(), NY_OK);
    EXPECT_EQ(ny_sim_misuse_count(), 0U);
}

}  // namespace
