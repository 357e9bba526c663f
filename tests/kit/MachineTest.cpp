// The verbs of vsmsgbus_testing.hpp.
#include <optional>
#include <thread>

#include "kit/MachineFixture.h"

using testing::ElementsAre;
using vsmsgbus::Handlers;
using vsmsgbus::Product;
using vsmsgbus::testing::Property;
using vsmsgbus::testing::Service;
using vsmsgbus::testing::TaskEnd;

namespace {

class KitMachine : public MachineFixture {};

TEST_F(KitMachine, AsksForProperties) {
    machine.InstallAgent();
    const Product product(id, {.properties = [](vsmsgbus::Properties& properties) {
                              properties.Set("General", "Name", "ü");
                              properties.Set("General", "Empty", "");
                          }});
    const auto properties = machine.AskProperties(id);
    EXPECT_THAT(properties, ElementsAre(Property{"General", "Name", "ü"}, Property{"General", "Empty", ""}));
    EXPECT_EQ(properties.Value("General", "Name"), "ü");
    EXPECT_EQ(properties.Text(), "General: Name = ü\nGeneral: Empty = \n");
}

TEST_F(KitMachine, WaitsUntilTheBridgeHasFoundTheAgentAndLostIt) {
    // Where the agent's key is missing, the bridge looks again after 15 seconds only.
    ASSERT_EQ(ny_setup_create_agent_key(machine.Setup()), NY_OK);
    const Product product(id, {.properties = TellOne});
    machine.InstallAgent();
    machine.WaitUntilRegistered(id, Service::Properties);
    EXPECT_EQ(machine.AskProperties(id).size(), 1U);
    machine.Remove();
    machine.WaitUntilUnregistered(id, Service::Properties);
}

TEST_F(KitMachine, UpgradesUnderTheModule) {
    machine.InstallAgent("5.6.0", "older");
    const Product product(id, {.properties = TellOne});
    const std::string before = ny_setup_current_folder(machine.Setup());
    machine.Upgrade("5.7.0");
    EXPECT_NE(ny_setup_current_folder(machine.Setup()), before);
    machine.WaitUntilRegistered(id, Service::Properties);
    EXPECT_EQ(ny_sim_call_count("ny_client_handler_start"), 2U) << "not the agent that was there before";
    EXPECT_EQ(machine.AskProperties(id).Value("General", "Version"), "1.0");
}

TEST_F(KitMachine, WaitsForAndDescribesEachService) {
    machine.InstallAgent();
    EXPECT_EQ(machine.Describe(id),
              "PRODUCT1000 is registered for nothing; no other product is registered; agent 5.7.0 (full) is installed, "
              "0 clients have started");
    Handlers handlers{.properties = TellOne, .policies = [](vsmsgbus::Policies&) {}};
    handlers.tasks = [](vsmsgbus::Task&) { return vsmsgbus::TaskResult::Done; };
    handlers.updates.notify = [](vsmsgbus::UpdateNotice&) { return 0; };
    const Product product(id, handlers);
    for (const Service service : {Service::Properties, Service::Policies, Service::Tasks, Service::Updates}) {
        machine.WaitUntilRegistered(id, service);
    }
    EXPECT_EQ(machine.Describe(id),
              "PRODUCT1000 is registered for properties, policies, tasks, updates; no other product is registered; "
              "agent 5.7.0 (full) is installed, 1 client has started");
}

TEST_F(KitMachine, NotifiesOfPoliciesThatItWasGiven) {
    machine.InstallAgent();
    std::vector<std::wstring> seen;
    const Product product(id, {.policies = [&](vsmsgbus::Policies& policies) {
                              policies.Walk([&](const vsmsgbus::Setting& setting) {
                                  seen.push_back(std::wstring(setting.name) + L"=" + std::wstring(setting.value));
                              });
                          }});
    machine.SetPolicies(R"([{"softwareId": "PRODUCT1000", "sections": [{"name": "Scan", "settings": {"Depth": 3}}]}])");
    machine.Notify(id);
    EXPECT_THAT(seen, ElementsAre(L"Depth=3"));
}

class KitMachineTasks : public MachineFixture {
protected:
    KitMachineTasks() {
        machine.InstallAgent();
        machine.SetTasks(R"([{"id": "scan", "product": "PRODUCT1000"}])");
    }
};

TEST_F(KitMachineTasks, AreRunToTheirEnd) {
    vsmsgbus::TaskResult result = vsmsgbus::TaskResult::Done;
    const Product product(id, {.tasks = [&](vsmsgbus::Task&) -> vsmsgbus::TaskOutcome { return result; }});
    EXPECT_EQ(machine.RunTask("scan"), TaskEnd::Done);
    result = vsmsgbus::TaskResult::Failed;
    EXPECT_EQ(machine.RunTask("scan"), TaskEnd::Failed) << "the end of the run before does not count";
}

TEST_F(KitMachineTasks, AreStoppedOnTheirOwnThread) {
    const Product product(id, {.tasks = [](vsmsgbus::Task&) {
                              return vsmsgbus::OnOwnThread([](const vsmsgbus::TaskRun& run) {
                                  while (!run.IsToStop()) {
                                      std::this_thread::yield();
                                  }
                                  return vsmsgbus::TaskResult::Failed;
                              });
                          }});
    machine.StartTask("scan");
    EXPECT_EQ(machine.StopTask("scan"), TaskEnd::Failed);
}

TEST_F(KitMachine, TellsOfUpdatesAndAsksForValues) {
    machine.InstallAgent();
    std::vector<std::wstring> told;
    std::wstring value = L"1";
    vsmsgbus::UpdateHandlers updates;
    updates.notify = [&](vsmsgbus::UpdateNotice& notice) {
        told = {std::wstring(notice.second), std::wstring(notice.third), std::wstring(notice.fourth)};
        return static_cast<int32_t>(notice.number);
    };
    updates.get = [&](std::wstring_view name) { return name == L"Version" ? std::optional(value) : std::nullopt; };
    updates.set = [&](std::wstring_view name, std::wstring_view text) {
        value = text;
        return name == L"Version";
    };
    const Product product(id, {.updates = updates});
    EXPECT_EQ(machine.Update(id, {"a \"b\"", "c\\", "\n", 7}), 7);
    EXPECT_THAT(told, ElementsAre(L"a \"b\"", L"c\\", L"\n"));
    EXPECT_EQ(machine.Update(id), 0);
    EXPECT_EQ(machine.GetValue(id, "Version"), "1");
    EXPECT_EQ(machine.GetValue(id, "Nothing"), std::nullopt);
    EXPECT_TRUE(machine.SetValue(id, "Version", "ü"));
    EXPECT_EQ(machine.GetValue(id, "Version"), "ü");
    EXPECT_FALSE(machine.SetValue(id, "Nothing", "2"));
}

TEST_F(KitMachine, HasCallsFail) {
    machine.InstallAgent();
    std::vector<bool> answers;
    const Product product(id, {.properties = [&](vsmsgbus::Properties& properties) {
                              answers = {properties.Set("a", "b", "1"), properties.Set("a", "b", "2")};
                          }});
    machine.Fail("ny_property_bag_add_property", 2, NY_OUT_OF_MEMORY);
    EXPECT_EQ(machine.AskProperties(id).Text(), "a: b = 1\n");
    EXPECT_THAT(answers, ElementsAre(true, false));
    machine.Fail("ny_property_bag_add_property", 1, NY_OUT_OF_MEMORY, NY_SIM_FROM_THEN_ON);
    machine.ClearFaults();
    EXPECT_EQ(machine.AskProperties(id).size(), 2U);
}

}  // namespace
