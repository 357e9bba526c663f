#include "Story.h"

#include <fmt/format.h>
#include <windows.h>

#include <filesystem>
#include <stdexcept>

#include "SampleModule.h"
#include "ny_simulator.h"

namespace fs = std::filesystem;

namespace {

// The bridge looks for a key that is missing every 15 seconds, and is told of changes in one that is there.
constexpr uint32_t lookTime = 20000;
constexpr uint32_t changeTime = 10000;

fs::path InstallFolder() {
    return fs::temp_directory_path() / ("agent-demo-" + std::to_string(::GetCurrentProcessId()));
}

void Tell(const char* actor, const char* line, void* userData) {
    auto& narrator = *static_cast<Narrator*>(userData);
    if (std::string_view(actor) == "bridge") {
        narrator.Detail(actor, line);
    } else {
        narrator.Say(actor, line);
    }
}

}  // namespace

Story::Story(Narrator& storyNarrator)
    : narrator(storyNarrator),
      calls(storyNarrator),
      installer(simulator::AgentInstaller::BuildsBesideProgram(), InstallFolder()) {}

void Story::Tell() {
    EnterWithoutAgent();
    Install();
    Upgrade();
    Remove();
    Leave();
}

void Story::EnterWithoutAgent() {
    narrator.Say("host", "loads the module; no agent is installed on this machine");
    Demand(SampleModuleLoad(&::Tell, &narrator), "the module could not be loaded");
    Demand(ny_sim_call_count(nullptr) == 0, "an agent was called");
    narrator.Say("bridge", "finds no agent, and waits for one: it looks for the agent's registry key every 15 seconds");
}

void Story::Install() {
    installer.Install("5.6.0", "older");
    narrator.Say("agent", fmt::format("is installed, version 5.6.0, in {}", installer.CurrentFolder().string()));
    AgentCalls::WaitFor("ny_property_register_provider_callback", lookTime);
    calls.Tell();
    narrator.Say("bridge",
                 fmt::format("has found the agent, started its client and registered {} with it", sampleProductId));
    SayWhereLibrariesAre();
    AskForProperties();
}

void Story::Upgrade() {
    installer.Upgrade("5.7.0", "full");
    narrator.Say("agent", fmt::format("is upgraded to version 5.7.0, in {}", installer.CurrentFolder().string()));
    AgentCalls::WaitFor("ny_property_register_provider_callback", changeTime);
    calls.Tell();
    narrator.Say("bridge", "has let go of the old version and started a client of the new one");
    SayWhereLibrariesAre();
    AskForProperties();
}

void Story::Remove() {
    installer.Remove();
    narrator.Say("agent", "is removed");
    AgentCalls::WaitFor("ny_client_handler_release", changeTime);
    calls.Tell();
    narrator.Say("bridge", "has released its client; it keeps waiting for the next agent");
}

void Story::Leave() {
    Demand(SampleModuleUnload(), "the module could not be unloaded");
    calls.Tell();
    Demand(::GetModuleHandleA("ny_client.dll") == nullptr, "a library of the agent is still loaded");
    const size_t alive = ny_sim_live_handles(NY_SIM_ANY);
    Demand(ny_sim_misuse_count() == 0, ny_sim_last_misuse());
    narrator.Say("agent", fmt::format("agent handles still alive: {}", alive));
    Demand(alive == 0, "handles were leaked");
}

void Story::AskForProperties() {
    ny_sim_property_request_t* request = nullptr;
    Demand(ny_sim_request_properties(sampleProductId, &request) == NY_OK, "the product is not registered");
    narrator.Say("agent", fmt::format("asks {} for its properties, on a thread of its own, {}", sampleProductId,
                                      ny_sim_property_request_thread(request)));
    int32_t answer = 0;
    Demand(ny_sim_property_request_wait(request, changeTime, &answer) == NY_OK, "the product did not answer");
    const size_t size = ny_sim_property_request_size(request);
    calls.Tell();
    narrator.Say("agent",
                 fmt::format("has the answer ({}): {} properties", answer == NY_OK ? "success" : "failure", size));
    for (size_t index = 0; index < size; ++index) {
        const char* path = nullptr;
        const char* name = nullptr;
        const char* value = nullptr;
        Demand(ny_sim_property_request_get(request, index, &path, &name, &value) == NY_OK, "a property is missing");
        narrator.Continue(fmt::format("{:<8}  {:<10}  {}", path, name, value));
    }
    ny_sim_property_request_release(request);
    Demand(answer == NY_OK && size != 0, "the product gave no properties");
}

void Story::SayWhereLibrariesAre() {
    char file[MAX_PATH] = {};
    const HMODULE library = ::GetModuleHandleA("ny_client.dll");
    Demand(library != nullptr && ::GetModuleFileNameA(library, file, MAX_PATH) != 0, "ny_client.dll is not loaded");
    narrator.Say("bridge", fmt::format("works with {}", file));
    Demand(fs::path(file).parent_path() == installer.CurrentFolder(), "this is not the version that is installed");
}

void Story::Demand(bool isTrue, const char* whatIsWrong) {
    if (!isTrue) {
        throw std::runtime_error(whatIsWrong);
    }
}
