// The handles of the simulated agent are counted.
#include <gtest/gtest.h>

#include "ny_simulator.h"

namespace {

TEST(SimulatedHandles, AreCountedByKind) {
    ny_logger_t* logger = nullptr;
    ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_LOGGER), 1U);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_VARIANT), 0U);
    ny_sim_logger_release(logger);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
}

}  // namespace
