#include "soak/Agent.h"

#include <gtest/gtest.h>

#include "Registry.h"
#include "soak/Actions.h"
#include "support/AgentRequest.h"
#include "support/AgentTasks.h"
#include "support/AgentUpdate.h"
#include "support/BridgeTest.h"
#include "support/PolicyNotice.h"

namespace {

constexpr char policyOfProduct[] = R"({"softwareId": "%", "feature": "FEATURE1000", "category": "General",
    "type": "Protection", "name": "My Default",
    "settingsObject": {"name": "My Default", "intParameter": "1", "stringParameter": "a", "digest": "0123abcd"},
    "sections": [{"name": "Scan", "settings": {"Enabled": "1", "Depth": 3}},
                 {"name": "Paths", "settings": {"Exclude": "C:\\one"}}]})";
constexpr char taskOfProduct[] = R"({"id": "task of %", "product": "%", "name": "The task", "type": "Scan",
    "settings": {"Scan": {"Folder": "C:\\", "Depth": "12", "Deep": "TRUE"}, "Report": {"To": "nobody"}}})";

// A JSON list of the pattern for each product, whose id stands where the pattern has a "%".
std::string ForEachProduct(const std::string& pattern) {
    std::string list = "[";
    for (const std::string& id : AllProductIds()) {
        list += list.size() > 1 ? "," : "";
        for (const char character : pattern) {
            character == '%' ? list += id : list += character;
        }
    }
    return list + "]";
}

std::string UpdaterCall(const std::string& productId, uint32_t variant) {
    switch (variant % 4) {
        case 0: return NotifyCall(productId);
        case 1: return SetCall(productId);
        case 2: return GetCall(productId);
        default: return EventCall(productId);
    }
}

}  // namespace

std::vector<std::string> AllProductIds() {
    std::vector<std::string> ids = {sharedId, "INSIDE"};
    for (size_t i = 0; i < productCount; ++i) {
        ids.push_back(ProductId(i));
    }
    for (size_t i = 0; i < callerCount; ++i) {
        ids.push_back(CallerId(i));
    }
    return ids;
}

void FillAgent() {
    ASSERT_EQ(ny_sim_policies_from_json(ForEachProduct(policyOfProduct).c_str()), NY_OK);
    SetTasks(ForEachProduct(taskOfProduct));
    ASSERT_EQ(ny_sim_set_all_information(R"({"AgentMode": "1", "GUID": "{0}", "Version": "5.7.0"})"), NY_OK);
}

bool IsAttached(const std::string& productId, Service service) {
    switch (service) {
        case Service::Property: return ny_sim_has_property_provider(productId.c_str()) != 0;
        case Service::Policy: return ny_sim_has_policy_callback(productId.c_str()) != 0;
        case Service::Task: return ny_sim_has_task_callbacks(productId.c_str(), nullptr) != 0;
        case Service::Update: return ny_sim_has_updater(productId.c_str()) != 0;
    }
    return false;
}

bool AgentCalls(const std::string& productId, Service service, uint32_t variant) {
    int32_t answer = NY_SIM_NOT_REGISTERED;
    switch (service) {
        case Service::Property: answer = AgentRequest(productId).Answer(); break;
        case Service::Policy: answer = PolicyNotice(productId).Answer(); break;
        case Service::Task:
            answer = AnswerOf("task of " + productId, static_cast<ny_sim_task_operation>(variant % 4));
            break;
        case Service::Update: answer = AgentUpdate(UpdaterCall(productId, variant)).Answer(); break;
    }
    return answer != NY_SIM_NOT_REGISTERED;
}

AgentOfTheSoak::AgentOfTheSoak() {
    // A missing key is looked for every 15 seconds only.
    simulator::AgentInstaller::CreateAgentKey();
    FillAgent();
}

void AgentOfTheSoak::Install(bool isOlderBuild) {
    ++installations;
    environment.InstallAgent(Version(), isOlderBuild ? "older" : "full");
    isInstalled = true;
}

void AgentOfTheSoak::Remove() {
    simulator::AgentInstaller::DeleteVersion();
    simulator::AgentInstaller::DeleteRuntimePath();
    isInstalled = false;
}

void AgentOfTheSoak::DeleteFiles() {
    environment.RemoveAgent();
}

bool AgentOfTheSoak::IsLoaded() {
    return ::GetModuleHandleA("ny_client.dll") != nullptr;
}

void AgentOfTheSoak::Touch() {
    static unsigned touches = 0;
    simulator::RegistryKey(HKEY_LOCAL_MACHINE, "Software\\Corvane\\Agent", KEY_SET_VALUE | KEY_WOW64_64KEY)
        .WriteText("Touched", std::to_string(++touches));
}
