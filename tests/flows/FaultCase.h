#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "flows/Flow.h"
#include "flows/FlowSession.h"

// One way in which one agent call of a flow fails.
struct FaultCase {
    enum class Mode { Once, FromThenOn, Missing };

    Mode mode;
    std::string function;
    uint32_t nth = 0;  // 1 is its first call in Run; 0 for a function that is missing

    // As the tables of outcomes have it, such as "once ny_policy_get 1".
    std::string Name() const;
};

// Every case of a flow whose good run called those functions, in that order: each call once and from then on, each
// function missing.
std::vector<FaultCase> CasesOf(const std::vector<std::string>& calls);

// Runs the cases of one flow, each with the fault and then again without it. What comes of a case is its transcript: as
// RunFlow's, the code that the agent answered as "<code>". A second run that is not as the good one is noted in it
// behind "AGAIN:", and a fault that did not strike as "NOT SEEN:".
class FaultCases {
public:
    // With `isEachAlone`, each case enters and leaves the bridge itself; else those that can share one session do,
    // which takes a fraction of the time.
    FaultCases(FlowWorld& flowWorld, const FlowKind& flowKind, bool isEachAlone);

    // The good run that the cases come from.
    const FlowOutcome& Good() const { return good; }
    std::vector<std::string> Run(const FaultCase& fault);
    // Ends the shared session. What it was found to have left, as lines that should not be.
    std::vector<std::string> End();

private:
    std::vector<std::string> RunAlone(const FaultCase& fault);
    std::vector<std::string> RunShared(const FaultCase& fault);
    std::vector<std::string> RunMissing(const FaultCase& fault);
    std::vector<std::string> AfterRun() const;

    FlowWorld& world;
    const FlowKind kind;
    const bool isAlone;
    const FlowOutcome good;
    std::optional<FlowSession> shared;
};
