#pragma once

#include <memory>
#include <string>
#include <vector>

#include "flows/Flow.h"
#include "support/KeptHandles.h"

// One Prepare, as many Runs as one likes of a flow that can run again, or one, and one CleanUp. RunFlow does all three.
class FlowSession {
public:
    // Prepares.
    FlowSession(FlowWorld& flowWorld, const FlowKind& kind);
    // Cleans up, if End did not.
    ~FlowSession();
    FlowSession(const FlowSession&) = delete;
    FlowSession& operator=(const FlowSession&) = delete;

    // The transcripts of Prepare, of one Run with the hook around it, and of CleanUp with what is then left.
    const std::vector<std::string>& Prepared() const { return prepared; }
    std::vector<std::string> Run(const FlowHook& hook = {});
    std::vector<std::string> End();

    // The agent's functions that Prepare called, and the last Run.
    const std::vector<std::string>& PrepareCalls() const { return prepareCalls; }
    const std::vector<std::string>& Calls() const { return calls; }

private:
    FlowWorld& world;
    KeptHandles kept;
    std::unique_ptr<Flow> flow;
    std::vector<std::string> prepared;
    std::vector<std::string> prepareCalls;
    std::vector<std::string> calls;
};
