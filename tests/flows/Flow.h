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

    // Sets up what the flow needs. No fault is in place yet.
    virtual void Prepare() = 0;
    // Before each Run; meets no fault.
    virtual void Begin() {}
    // The flow itself; returns when nothing of it goes on any more, on whatever thread. Throws nothing on its own.
    virtual void Run() = 0;
    // After each Run: notes what is then to be seen. Meets no fault.
    virtual void Look() {}
    // Everything gone again, whatever Run came to; meets no fault.
    virtual void CleanUp() = 0;

protected:
    FlowWorld& world;
};

struct FlowKind {
    const char* name;  // of letters and digits, as in the names of tests and files
    std::unique_ptr<Flow> (*make)(FlowWorld& world);
    bool canRunAgain = true;  // whether Run may come again before CleanUp
};

// All of them.
const std::vector<FlowKind>& AllFlows();

// Two functions: one puts a fault in place, the other takes it away. Either may be empty.
struct FlowHook {
    std::function<void()> install = {};
    std::function<void()> remove = {};
    bool again = false;  // whether Run comes again without the hook, before CleanUp, in a flow that allows it
};

struct FlowOutcome {
    // Answers of exports, what the module and the agent saw, log lines, in order; CleanUp's stand behind "later:". At
    // its end "kept: <n> handles" for those that the agent would not take back, and what must never be, each line
    // beginning with "LEFT:" (registrations, libraries, handles used after their end).
    std::vector<std::string> transcript;
    std::vector<std::string> again;         // the transcript of the second Run, when there was one
    std::vector<std::string> prepareCalls;  // the agent's functions that Prepare called, in order
    std::vector<std::string> calls;         // those that Run called
};

// One run: Prepare, install the hook, Run, remove the hook, Run again if asked for, CleanUp, and the check that nothing
// is left. Ends with the agent's faults cleared and its handles released.
FlowOutcome RunFlow(FlowWorld& world, const FlowKind& kind, const FlowHook& hook = {});

// The lines of a transcript that every program sees: without the texts that only the bridge's objects show.
std::vector<std::string> WithoutDropped(const std::vector<std::string>& transcript);
void Append(std::vector<std::string>& lines, const std::vector<std::string>& more);
// Lines for a message.
std::string Joined(const std::vector<std::string>& lines);
