#include "flows/FlowSession.h"

#include <utility>

#include "support/AgentCalls.h"

namespace {

// Notes in the transcript all that a run has left behind and must not.
void CheckNothingIsLeft(FlowWorld& world, KeptHandles& kept) {
    if (const size_t misused = ny_sim_misuse_count(); misused != 0) {
        world.Note("LEFT: dead handles used: " + std::string(ny_sim_last_misuse()));
        ny_sim_reset();
    }
    if (const size_t count = kept.Release(); count != 0) {
        world.Note("kept: " + std::to_string(count) + " handles");
    }
    if (const size_t alive = ny_sim_live_handles(NY_SIM_ANY); alive != 0) {
        world.Note("LEFT: handles: " + std::to_string(alive));
    }
    if (const std::string left = FlowWorld::LeftWithTheAgent(); !left.empty()) {
        world.Note("LEFT:" + left);
    }
}

}  // namespace

FlowSession::FlowSession(FlowWorld& flowWorld, const FlowKind& kind) : world(flowWorld), flow(kind.make(flowWorld)) {
    ny_sim_clear_calls();
    flow->Prepare();
    prepareCalls = AgentCalls();
    prepared = world.TakeTranscript();
}

FlowSession::~FlowSession() {
    if (flow != nullptr) {
        End();
    }
}

std::vector<std::string> FlowSession::Run(const FlowHook& hook) {
    flow->Begin();
    ny_sim_clear_calls();
    if (hook.install) {
        hook.install();
    }
    flow->Run();
    if (hook.remove) {
        hook.remove();
    }
    ny_sim_clear_faults();
    calls = AgentCalls();
    flow->Look();
    return world.TakeTranscript();
}

std::vector<std::string> FlowSession::End() {
    flow->CleanUp();
    flow.reset();
    CheckNothingIsLeft(world, kept);
    ny_sim_reset();
    return world.TakeTranscript();
}
