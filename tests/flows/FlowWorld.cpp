#include "flows/FlowWorld.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

#include "Registry.h"
#include "support/AgentCalls.h"
#include "support/PolicyValues.h"

using simulator::AgentInstaller;

namespace {

constexpr const char* agentLibraries[] = {"ny_client.dll", "ny_variant.dll", "ny_msgbus.dll", "ny_logger.dll"};
constexpr char firstVersion[] = "5.7.0";
constexpr char secondVersion[] = "5.7.1";

// The log lines when a client cannot be started.
constexpr const char* noStart[] = {"sink 3: NY log message, [ny_client] falied to start ny client.",
                                   "sink 3: NY log message, [ny_client] failed to initialize dispatcher."};

void Touch(int count) {
    simulator::RegistryKey(HKEY_LOCAL_MACHINE, "Software\\Corvane\\Agent", KEY_SET_VALUE | KEY_WOW64_64KEY)
        .WriteText("Touched", std::to_string(count));
}

// The services that the product is registered for with the agent.
std::string Registered() {
    constexpr const char* product = FlowWorld::product;
    std::string text;
    text += ny_sim_has_property_provider(product) != 0 ? " properties" : "";
    text += ny_sim_has_policy_callback(product) != 0 ? " policies" : "";
    text += ny_sim_has_task_callbacks(product, nullptr) != 0 ? " tasks" : "";
    text += ny_sim_has_updater(product) != 0 ? " updates" : "";
    return text;
}

}  // namespace

FlowWorld::FlowWorld() {
    environment.InstallAgent(secondVersion);
    secondFolder = environment.Installer().CurrentFolder();
    environment.UpgradeAgent(firstVersion);
    firstFolder = environment.Installer().CurrentFolder();
    PolicyValues::MakeKey();
    getLogManager()->SetListener(&hostListener);
}

FlowWorld::~FlowWorld() {
    getLogManager()->SetListener(nullptr);
}

void FlowWorld::PutFirstAgent() {
    AgentInstaller::WriteRuntimePath(firstFolder);
    AgentInstaller::WriteVersion(firstVersion);
}

void FlowWorld::PutSecondAgent() {
    AgentInstaller::WriteRuntimePath(secondFolder);
    AgentInstaller::WriteVersion(secondVersion);
}

void FlowWorld::TakeAgentAway() {
    AgentInstaller::DeleteVersion();
}

// Libraries come and go without an event that one could wait for.
void FlowWorld::WaitFor(const std::function<bool()>& happened, const char* what) {
    constexpr int looksBetweenTouches = 10;
    const auto end = std::chrono::steady_clock::now() + patience;
    for (int look = 1; !happened(); ++look) {
        if (std::chrono::steady_clock::now() > end) {
            Note(std::string("NOT SEEN: ") + what);
            return;
        }
        if (look % looksBetweenTouches == 0) {
            Touch(look);
        }
        ::Sleep(1);
    }
}

void FlowWorld::WaitForStart() {
    const auto isStarting = [this] {
        const std::vector<std::string> lines = transcript.Lines();
        return ny_sim_call_count("ny_client_handler_create") != 0 ||
               std::find_first_of(lines.begin(), lines.end(), std::begin(noStart), std::end(noStart)) != lines.end();
    };
    WaitFor(isStarting, "the start of a client");
}

void FlowWorld::WaitForNoAgent() {
    const auto isNoneLoaded = [] {
        for (const char* library : agentLibraries) {
            if (::GetModuleHandleA(library) != nullptr) {
                return false;
            }
        }
        return true;
    };
    WaitFor(isNoneLoaded, "the end of the agent's libraries");
}

void FlowWorld::NoteCalls() {
    for (const std::string& function : AgentCalls()) {
        Note("agent: " + function);
    }
}

void FlowWorld::NoteRegistrations() {
    const std::string text = Registered();
    Note("agent: " + std::to_string(ny_sim_started_clients()) +
         " client started, registered:" + (text.empty() ? " nothing" : text));
}

std::string FlowWorld::LeftWithTheAgent() {
    std::string text = Registered();
    text += ny_sim_started_clients() != 0 ? " client" : "";
    text += ny_sim_lent_tasks() != 0 ? " task" : "";
    for (const char* library : agentLibraries) {
        if (::GetModuleHandleA(library) != nullptr) {
            text += std::string(" ") + library;
        }
    }
    return text;
}
