#include "flows/Flow.h"

#include <algorithm>
#include <iterator>

#include "flows/FlowList.h"
#include "support/AgentCalls.h"
#include "support/KeptHandles.h"

const std::vector<FlowKind>& AllFlows() {
    static const std::vector<FlowKind> all = [] {
        std::vector<FlowKind> kinds;
        for (const auto& room :
             {LifeFlows(), PropertyFlows(), PolicyFlows(), TaskFlows(), UpdateFlows(), ServiceFlows()}) {
            kinds.insert(kinds.end(), room.begin(), room.end());
        }
        return kinds;
    }();
    return all;
}

namespace {

// What would be left of the run, noted as such.
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

FlowOutcome RunFlow(FlowWorld& world, const FlowKind& kind, const FlowHook& hook) {
    FlowOutcome outcome;
    KeptHandles kept;
    const std::unique_ptr<Flow> flow = kind.make(world);
    flow->Prepare();
    outcome.prepareCalls = AgentCalls();
    ny_sim_clear_calls();
    if (hook.install) {
        hook.install();
    }
    flow->Run();
    if (hook.remove) {
        hook.remove();
    }
    ny_sim_clear_faults();
    outcome.calls = AgentCalls();
    world.Note("later:");
    flow->CleanUp();
    CheckNothingIsLeft(world, kept);
    ny_sim_reset();
    outcome.transcript = world.TakeTranscript();
    return outcome;
}

std::vector<std::string> WithoutDropped(const std::vector<std::string>& transcript) {
    std::vector<std::string> lines;
    std::copy_if(transcript.begin(), transcript.end(), std::back_inserter(lines),
                 [](const std::string& line) { return !line.starts_with("dropped: "); });
    return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}
