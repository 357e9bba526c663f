#include "Story.h"

#include <fmt/format.h>
#include <windows.h>

#include <filesystem>

#include "Chapters.h"
#include "SampleModule.h"
#include "ny_simulator.h"

namespace fs = std::filesystem;

namespace {

// Of those with which the bridge attaches the product to the agent: once it was made, the agent can call.
constexpr char lastRegistration[] = "ny_updater_register_callbacks";

void Tell(const char* actor, const char* line, void* userData) {
    auto& narrator = *static_cast<Narrator*>(userData);
    if (std::string_view(actor) == "bridge") {
        narrator.Detail(actor, line);
    } else {
        narrator.Say(actor, line);
    }
}

}  // namespace

void Story::Tell() {
    EnterWithoutAgent();
    Install();
    Upgrade();
    Remove();
    Leave();
    stage.summary.Tell(stage.narrator);
}

void Story::EnterWithoutAgent() {
    stage.narrator.Say("host", "loads the module; no agent is installed on this machine");
    Demand(SampleModuleLoad(&::Tell, &stage.narrator), "the module could not be loaded");
    Demand(ny_sim_call_count(nullptr) == 0, "an agent was called");
    stage.narrator.Say("bridge",
                       "finds no agent, and waits for one: it looks for the agent's registry key every 15 seconds");
}

void Story::Install() {
    stage.installer.Install("5.6.0", "older");
    stage.narrator.Say("agent",
                       fmt::format("is installed, version 5.6.0, in {}", stage.installer.CurrentFolder().string()));
    stage.narrator.Say("host", "waits for the bridge's next look for the key, 15 seconds at most");
    AgentCalls::WaitFor(lastRegistration, lookTime);
    stage.calls.Tell();
    stage.narrator.Say(
        "bridge", fmt::format("has found the agent, started its client and registered {} with it", sampleProductId));
    SayWhereLibrariesAre();
    stage.summary.Add("install", "the bridge has found version 5.6.0, which came after the module");
    TellOfProperties(stage, "5.6.0");
}

void Story::Upgrade() {
    stage.installer.Upgrade("5.7.0", "full");
    stage.narrator.Say("agent",
                       fmt::format("is upgraded to version 5.7.0, in {}", stage.installer.CurrentFolder().string()));
    AgentCalls::WaitFor(lastRegistration, changeTime);
    stage.calls.Tell();
    stage.narrator.Say("bridge", "has let go of the old version and started a client of the new one");
    SayWhereLibrariesAre();
    stage.summary.Add("upgrade", "to version 5.7.0, without the module's doing");
    TellOfProperties(stage, "5.7.0");
    TellOfPolicies(stage);
    TellOfTasks(stage);
    TellOfUpdates(stage);
    TellOfAgentServices(stage, "5.7.0");
}

void Story::Remove() {
    stage.installer.Remove();
    stage.narrator.Say("agent", "is removed");
    AgentCalls::WaitFor("ny_client_handler_release", changeTime);
    stage.calls.Tell();
    stage.narrator.Say("bridge", "has released its client; it keeps waiting for the next agent");
    stage.summary.Add("removal", "under the running process, which goes on without an agent");
}

void Story::Leave() {
    Demand(SampleModuleUnload(), "the module could not be unloaded");
    stage.calls.Tell();
    Demand(::GetModuleHandleA("ny_client.dll") == nullptr, "a library of the agent is still loaded");
    const size_t alive = ny_sim_live_handles(NY_SIM_ANY);
    Demand(ny_sim_misuse_count() == 0, ny_sim_last_misuse());
    stage.narrator.Say("agent", fmt::format("agent handles still alive: {}", alive));
    Demand(alive == 0, "handles were leaked");
    stage.summary.Add("leaving", "with no library of the agent loaded, and none of its handles alive");
}

void Story::SayWhereLibrariesAre() {
    char file[MAX_PATH] = {};
    const HMODULE library = ::GetModuleHandleA("ny_client.dll");
    Demand(library != nullptr && ::GetModuleFileNameA(library, file, MAX_PATH) != 0, "ny_client.dll is not loaded");
    stage.narrator.Say("bridge", fmt::format("works with {}", file));
    Demand(fs::path(file).parent_path() == stage.installer.CurrentFolder(),
           "this is not the version that is installed");
}
