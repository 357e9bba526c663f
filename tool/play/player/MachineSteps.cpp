// The agent comes and goes, what it holds, and how its calls fare.
#include <windows.h>

#include "tool/play/player/MemoryFault.h"
#include "tool/play/player/Steps.h"
#include "tool/text/Utf8.h"

namespace tool::play {

namespace {

using vsmsgbus::testing::Failure;
using Json = nlohmann::json;

void Install(Stage& stage, const Json& step) {
    const std::string version = step.value("version", "5.7.0");
    stage.Machine().InstallAgent(version, step.value("build", "full"));
    stage.Tell("agent",
               "is installed, version " + version + ", in " + ny_setup_current_folder(stage.Machine().Setup()));
}

void Upgrade(Stage& stage, const Json& step) {
    const std::string version = step.at("version");
    stage.Machine().Upgrade(version, step.value("build", "full"));
    stage.Tell("agent",
               "is upgraded to version " + version + ", in " + ny_setup_current_folder(stage.Machine().Setup()));
}

void Remove(Stage& stage, const Json& /*step*/) {
    stage.Machine().Remove();
    stage.Tell("agent", "is removed");
}

void MakeAgentKey(Stage& stage, const Json& /*step*/) {
    if (ny_setup_create_agent_key(stage.Machine().Setup()) != NY_OK) {
        throw Failure(ny_setup_last_error());
    }
}

void MakeRegistryKey(Stage& /*stage*/, const Json& step) {
    HKEY key = nullptr;
    const LSTATUS code = ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, PathOf(step.at("key").get<std::string>()).c_str(), 0,
                                           nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    if (code != ERROR_SUCCESS) {
        throw Failure("the key cannot be made: error " + std::to_string(code));
    }
    ::RegCloseKey(key);
}

void SetPolicies(Stage& stage, const Json& step) {
    stage.Machine().SetPolicies(step.at("policies").dump());
}

void SetTasks(Stage& stage, const Json& step) {
    stage.Machine().SetTasks(step.at("tasks").dump());
}

void SetInformation(Stage& /*stage*/, const Json& step) {
    if (ny_sim_set_all_information(step.at("values").dump().c_str()) != NY_OK) {
        throw Failure("the agent does not take these values");
    }
}

void Fail(Stage& stage, const Json& step) {
    const std::string function = step.at("function");
    stage.FaultsBefore().emplace(function, ny_sim_fault_count(function.c_str()));
    stage.Machine().Fail(step.at("function"), step.value("nth", 1U), step.value("code", int32_t{NY_UNEXPECTED}),
                         step.value("always", false) ? NY_SIM_FROM_THEN_ON : NY_SIM_ONCE);
}

void FailBridgeMemory(Stage& stage, const Json& step) {
    WatchMemoryOf(stage.Bridge());
    FailMemory(step.value("nth", 1U), step.value("always", false));
}

void ClearFaults(Stage& stage, const Json& /*step*/) {
    EndMemoryFault();
    stage.Machine().ClearFaults();
    for (const auto& [function, count] : stage.FaultsBefore()) {
        if (ny_sim_fault_count(function.c_str()) == count) {
            stage.Tell("player", "no call of " + function + " has failed");
            stage.Send({{"event", "fact"}, {"unmet", function}});
        }
    }
    stage.FaultsBefore().clear();
    if (CountMemoryFaults() != 0) {
        stage.Tell("player", "allocations of the bridge's that have failed since the story began: " +
                                 std::to_string(CountMemoryFaults()));
    }
}

void Block(Stage& stage, const Json& step) {
    stage.AllHolds().Of(step.at("function")).Block();
}

void Unblock(Stage& stage, const Json& step) {
    stage.AllHolds().Of(step.at("function")).Unblock();
}

void Slow(Stage& stage, const Json& step) {
    stage.AllHolds().Of(step.at("function")).Delay(std::chrono::milliseconds(step.at("milliseconds").get<uint32_t>()));
}

void Log(Stage& stage, const Json& step) {
    const std::string from = step.value("from", "agent");
    const std::string message = step.at("message");
    stage.Tell("agent", "writes the log line \"" + message + '"');
    if (ny_sim_emit_log(step.value("severity", 3U), from.c_str(), message.c_str()) != NY_OK) {
        throw Failure("nobody takes the agent's log lines");
    }
}

}  // namespace

StepTable MachineSteps() {
    return {{"install", &Install},
            {"upgrade", &Upgrade},
            {"remove", &Remove},
            {"make agent key", &MakeAgentKey},
            {"make registry key", &MakeRegistryKey},
            {"set policies", &SetPolicies},
            {"set tasks", &SetTasks},
            {"set information", &SetInformation},
            {"fail", &Fail},
            {"fail memory", &FailBridgeMemory},
            {"clear faults", &ClearFaults},
            {"block", &Block},
            {"unblock", &Unblock},
            {"slow", &Slow},
            {"log", &Log}};
}

}  // namespace tool::play
