#include "faults/FaultCases.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "faults/FaultLines.h"
#include "support/Watchdog.h"

namespace {

// Every day, so many cases of one kind of fault in one flow and of one mode.
constexpr size_t casesOfEveryDay = 3;
// For the watcher to do what a fault may keep it from.
constexpr std::chrono::milliseconds shortPatience{300};

bool AreAllWanted() {
    return std::getenv("FLOWS_WHOLE") != nullptr;
}

// Runs the cases of one flow and one kind of fault.
class Cases {
public:
    Cases(FlowWorld& flowWorld, const FlowKind& flowKind, const FlowOutcome& goodOutcome, const FaultKind& faultKind)
        : world(flowWorld), flow(flowKind), good(goodOutcome), fault(faultKind) {}

    FaultCount RunAll(size_t calls) {
        const size_t step = AreAllWanted() ? 1 : std::max<size_t>(1, calls / casesOfEveryDay);
        for (const bool isOnce : {true, false}) {
            for (size_t nth = 1; nth <= calls; nth += step) {
                Run(nth, isOnce);
            }
        }
        return count;
    }

private:
    void Run(size_t nth, bool isOnce) {
        const std::string name = std::string(flow.name) + ": " + fault.name + " " + std::to_string(nth) +
                                 (isOnce ? " fails" : " fails, and all after it");
        const Watchdog watchdog(name);
        SCOPED_TRACE(name);
        const FlowHook failing{[&] { fault.fail(nth, isOnce); },
                               [&] {
                                   fault.rest();
                                   ++count.cases;
                                   count.missed += fault.failed() == 0 ? size_t{1} : size_t{0};
                               }};
        world.patience = shortPatience;
        const FlowOutcome outcome = RunFlow(world, flow, failing);
        world.patience = soon;
        CheckLines(outcome);
        EXPECT_EQ(fault.takeLeftOver(), "");
        // The flow works again.
        EXPECT_EQ(Joined(RunFlow(world, flow).transcript), Joined(good.transcript));
        EXPECT_EQ(fault.takeLeftOver(), "") << "in the run after it";
    }

    void CheckLines(const FlowOutcome& outcome) {
        for (const std::string& line : outcome.transcript) {
            const bool isOfGoodRun =
                std::find(good.transcript.begin(), good.transcript.end(), line) != good.transcript.end();
            EXPECT_TRUE(isOfGoodRun || IsLineOfFailure(line) || fault.explains(line)) << line;
        }
    }

    FlowWorld& world;
    const FlowKind& flow;
    const FlowOutcome& good;
    const FaultKind& fault;
    FaultCount count;
};

}  // namespace

FaultCount& FaultCount::operator+=(const FaultCount& other) {
    cases += other.cases;
    missed += other.missed;
    return *this;
}

FaultCount RunFaultCases(FlowWorld& world, const FlowKind& flow, const FlowOutcome& good, size_t calls,
                         const FaultKind& fault) {
    return Cases(world, flow, good, fault).RunAll(calls);
}

void PrintCount(const std::string& what, const FaultCount& count) {
    std::printf("fault cases: %s: %zu, %zu not reached\n", what.c_str(), count.cases, count.missed);
}
