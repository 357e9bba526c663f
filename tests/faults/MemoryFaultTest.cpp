// Memory runs out at every allocation that the bridge makes in a flow, once or from then on.
#include "faults/BridgeMemory.h"
#include "faults/FaultCases.h"

namespace {

TEST(BridgeAllocations, AreAllCounted) {
    EXPECT_EQ(BridgeMemory::Uncounted(), std::vector<std::string>());
}

class MemoryFault : public testing::TestWithParam<FlowKind> {};

TEST_P(MemoryFault, IsAnsweredAndLeavesNothing) {
    FlowWorld world;
    const BridgeMemory memory;
    const FaultKind fault{.name = "allocation",
                          .fail = [](size_t nth, bool isOnce) { BridgeMemory::Fail(nth, isOnce ? 1 : forEver); },
                          .rest = &BridgeMemory::Rest,
                          .failed = &BridgeMemory::Failures};
    // The first run of all is another than those after it: what it makes for good, it makes once.
    RunFlow(world, GetParam());
    size_t calls = 0;
    const FlowHook counting{&BridgeMemory::Count, [&] {
                                BridgeMemory::Rest();
                                calls = BridgeMemory::Allocations();
                            }};
    const FlowOutcome good = RunFlow(world, GetParam(), counting);
    const FaultCount count = RunFaultCases(world, GetParam(), good, calls, fault);
    // How often the watcher looks is not quite the same each time.
    EXPECT_LE(count.missed, 1 + count.cases / 10);
    PrintCount(std::string("memory, ") + GetParam().name, count);
}

INSTANTIATE_TEST_SUITE_P(Each, MemoryFault, testing::ValuesIn(AllFlows()),
                         [](const testing::TestParamInfo<FlowKind>& flow) { return std::string(flow.param.name); });

}  // namespace
