// Every flow without a fault, twice in one process: the second run is as the first.
#include "flows/Flow.h"

namespace {

class Flows : public testing::TestWithParam<FlowKind> {};

TEST_P(Flows, RunAgainAsTheFirstTime) {
    FlowWorld world;
    const FlowOutcome first = RunFlow(world, GetParam());
    const FlowOutcome second = RunFlow(world, GetParam());
    EXPECT_EQ(Joined(first.transcript), Joined(second.transcript));
    EXPECT_EQ(first.calls, second.calls);
    for (const std::string& line : first.transcript) {
        EXPECT_FALSE(line.starts_with("LEFT:") || line.starts_with("NOT SEEN:")) << line;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, Flows, testing::ValuesIn(AllFlows()),
                         [](const testing::TestParamInfo<FlowKind>& flow) { return std::string(flow.param.name); });

}  // namespace
