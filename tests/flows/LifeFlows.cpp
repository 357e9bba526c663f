// Entering and leaving, and the agent that comes, changes and goes.
#include "flows/EnteredFlow.h"
#include "flows/FlowList.h"

namespace {

class EntryFlow final : public EnteringFlow {
public:
    using EnteringFlow::EnteringFlow;
    void Prepare() override {}
    void Run() override {
        const bool isEntered = Enter(allServices);
        world.Note("Entry: " + TextOf(isEntered) + (instance != nullptr ? "" : ", no instance"));
        world.NoteRegistrations();
    }
};

class ExitFlow final : public EnteredFlow<allServices> {
public:
    using EnteredFlow::EnteredFlow;
    void Run() override {
        world.Note("Exit: " + TextOf(VsMsgbusExit(FlowWorld::product, std::exchange(instance, nullptr))));
        world.NoteRegistrations();
    }
};

// The agent comes, changes or goes, and is back at the end.
class AgentFlow : public EnteredFlow<allServices> {
public:
    using EnteredFlow::EnteredFlow;
    void CleanUp() override {
        EnteredFlow::CleanUp();
        world.PutFirstAgent();
    }

protected:
    void EndWithTheAgent() {
        world.TakeAgentAway();
        world.WaitForNoAgent();
        world.NoteCalls();
    }
};

// The agent comes while the product is there. Nothing tells when the start is over; so the agent goes again, and the
// watcher comes to that when it has done with the start.
class StartFlow final : public AgentFlow {
public:
    using AgentFlow::AgentFlow;
    void Prepare() override {
        world.TakeAgentAway();
        AgentFlow::Prepare();
    }
    void Run() override {
        world.PutFirstAgent();
        world.WaitForStart();
        EndWithTheAgent();
    }
};

class StopFlow final : public AgentFlow {
public:
    using AgentFlow::AgentFlow;
    void Run() override {
        EndWithTheAgent();
        world.NoteRegistrations();
    }
};

// Ends as the start does.
class UpgradeFlow final : public AgentFlow {
public:
    using AgentFlow::AgentFlow;
    void Run() override {
        world.PutSecondAgent();
        world.WaitForStart();
        EndWithTheAgent();
    }
};

}  // namespace

std::vector<FlowKind> LifeFlows() {
    return {{"Entry", MakeFlow<EntryFlow>, false},
            {"Exit", MakeFlow<ExitFlow>, false},
            {"Start", MakeFlow<StartFlow>, false},
            {"Stop", MakeFlow<StopFlow>, false},
            {"Upgrade", MakeFlow<UpgradeFlow>, false}};
}
