// The agent has policies for the module, changes one, and is asked for them again.
#include <fmt/format.h>
#include <windows.h>

#include <nlohmann/json.hpp>
#include <string>

#include "Chapters.h"
#include "FileBesideProgram.h"
#include "SampleModule.h"
#include "ny_simulator.h"

namespace {

// Where the names of policies in force are recorded: a key of the endpoint product's, there once that is installed.
constexpr wchar_t namesKey[] = LR"(SOFTWARE\Corvane\Endpoint\AV)";

void MakeNamesKey() {
    HKEY key = nullptr;
    Demand(::RegCreateKeyExW(HKEY_LOCAL_MACHINE, namesKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) ==
               ERROR_SUCCESS,
           "the product's registry key cannot be made");
    ::RegCloseKey(key);
}

void SayNames(Narrator& narrator) {
    narrator.Say("bridge", fmt::format("has recorded the names of policies in force, in HKEY_LOCAL_MACHINE\\{}",
                                       R"(SOFTWARE\Corvane\Endpoint\AV)"));
    for (const char* const value :
         {"OASPolicyName", "ODSPolicyName", "APPolicyName", "EPPolicyName", "CommonScanPolicyName"}) {
        char name[256] = {};
        DWORD size = sizeof name;
        Demand(::RegGetValueA(HKEY_LOCAL_MACHINE, R"(SOFTWARE\Corvane\Endpoint\AV)", value, RRF_RT_REG_SZ, nullptr,
                              name, &size) == ERROR_SUCCESS,
               "a policy's name was not recorded");
        narrator.Continue(fmt::format("{:<22}{}", value, name));
    }
}

void Push(Narrator& narrator, const nlohmann::json& policies, const char* what) {
    Demand(ny_sim_policies_from_json(policies.dump().c_str()) == NY_OK, "these are no policies");
    ny_sim_policy_request_t* request = nullptr;
    Demand(ny_sim_notify_policy(sampleProductId, &request) == NY_OK, "the product is not registered for policies");
    narrator.Say("agent", fmt::format("{}, and notifies {} on a thread of its own, {}", what, sampleProductId,
                                      ny_sim_policy_request_thread(request)));
    int32_t answer = NY_UNEXPECTED;
    const int32_t waited = ny_sim_policy_request_wait(request, changeTime, &answer);
    ny_sim_policy_request_release(request);
    Demand(waited == NY_OK && answer == NY_OK, "the product did not enforce its policies");
}

}  // namespace

void TellOfPolicies(Stage& stage) {
    Narrator& narrator = stage.narrator;
    MakeNamesKey();
    nlohmann::json policies = nlohmann::json::parse(ReadFileBesideProgram("policies.json"));
    Push(narrator, policies, "is given the policies of policies.json");
    SayNames(narrator);
    stage.calls.Tell();

    policies.at(0).at("sections").at(0).at("settings").at("MaximumSeconds") = 30;
    Push(narrator, policies, "is given a changed policy");
    Demand(SampleModuleEnforceAgain(), "the agent did not send the policies again");
    stage.calls.Tell();
    stage.summary.Add("policies", "walked, dumped, their names recorded; a user's; one changed; asked for again");
}
