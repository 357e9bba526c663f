// The flows: each thing that modules and the agent do with the bridge, small, and able to run again and again in one
// process. What drives them puts a fault into a run and looks at what comes of it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "flows/FlowWorld.h"

// One run of a flow; an object is used once. What happens is noted in the world's transcript.
class Flow {
public:
    explicit Flow(FlowWorld& flowWorld) : world(flowWorld) {}
    virtual ~Flow() = default;
    Flow(const Flow&) = delete;
    Flow& operator=(const Flow&) = delete;

    // What must stand before; meets no fault.
    virtual void Prepare() = 0;
    // The flow itself; returns when nothing of it goes on any more, on whatever thread. Throws nothing on its own.
    virtual void Run() = 0;
    // Everything gone again, whatever Run came to; meets no fault.
    virtual void CleanUp() = 0;

protected:
    FlowWorld& world;
};

struct FlowKind {
    const char* name;  // of letters and digits, as in the names of tests and files
    std::unique_ptr<Flow> (*make)(FlowWorld& world);
};

// All of them.
const std::vector<FlowKind>& AllFlows();

// What puts a fault in and takes it out again; either may be empty.
struct FlowHook {
    std::function<void()> install = {};
    std::function<void()> remove = {};
};

struct FlowOutcome {
    // Answers of exports, what the module and the agent saw, log lines, in order; "later:" stands where Run ended. At
    // its end "kept: <n> handles" for those that the agent would not take back, and what must never be, each line
    // beginning with "LEFT:" (registrations, libraries, handles used after their end).
    std::vector<std::string> transcript;
    std::vector<std::string> prepareCalls;  // the agent's functions that Prepare called, in order
    std::vector<std::string> calls;         // those that Run called

    bool operator==(const FlowOutcome& other) const { return transcript == other.transcript; }
};

// One run: Prepare, install the hook, Run, remove the hook, CleanUp, and the check that nothing is left. Ends with the
// agent's faults cleared and its handles released.
FlowOutcome RunFlow(FlowWorld& world, const FlowKind& kind, const FlowHook& hook = {});

// The lines of a transcript that every program sees: without the texts that only the bridge's objects show.
std::vector<std::string> WithoutDropped(const std::vector<std::string>& transcript);
// Lines for a message.
std::string Joined(const std::vector<std::string>& lines);
