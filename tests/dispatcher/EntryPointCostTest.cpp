// The cost of a warm call of a lazy entry point beside the agent's own work.
#include "dispatcher/DispatcherTest.h"
#include "dispatcher/groups/PolicyGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "support/AgentCalls.h"
#include "support/FailingMemory.h"

namespace {

class EntryPointCost : public DispatcherTest {};

// The counter itself: without it the others could not fail.
TEST_F(EntryPointCost, IsCountedInAllocations) {
    environment.InstallAgent();
    const size_t before = AllocationsOfThread();
    agent::ny_variant_release(nullptr);
    EXPECT_GT(AllocationsOfThread(), before) << "the first call loads the group";
}

TEST_F(EntryPointCost, IsOneAgentCallAndNoAllocation) {
    environment.InstallAgent();
    agent::ny_variant_release(nullptr);
    agent::ny_policy_uri_get_feature(nullptr, nullptr);
    log.Take();
    ny_sim_clear_calls();
    const size_t before = AllocationsOfThread();
    for (int i = 0; i < 1000; ++i) {
        agent::ny_variant_release(nullptr);
        agent::ny_policy_uri_get_feature(nullptr, nullptr);
    }
    EXPECT_EQ(AllocationsOfThread(), before);
    EXPECT_EQ(ny_sim_call_count(nullptr), 2000U);
    EXPECT_THAT(log.Lines(), testing::IsEmpty());
}

// Nothing is remembered about a function that is not there either.
TEST_F(EntryPointCost, IsNoAllocationWhenTheFunctionIsMissing) {
    environment.InstallAgent("5.7.0", "empty");
    agent::ny_variant_release(nullptr);
    const size_t before = AllocationsOfThread();
    EXPECT_EQ(agent::ny_variant_release(nullptr), NY_FUNCTION_MISSING);
    EXPECT_EQ(AllocationsOfThread(), before);
}

}  // namespace
