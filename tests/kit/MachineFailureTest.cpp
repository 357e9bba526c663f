// The failures of vsmsgbus_testing.hpp, letter for letter, when an expectation is not met.
#include <stdexcept>

#include "kit/MachineFixture.h"
#include "support/Event.h"
#include "support/OnPurpose.h"

using testing::MatchesRegex;
using vsmsgbus::Product;
using vsmsgbus::testing::Service;

namespace {

class KitFailure : public MachineFixture {
protected:
    // A product that can be called for properties, policies and updates, and does nothing then.
    static vsmsgbus::Handlers Silent() {
        vsmsgbus::Handlers handlers;
        handlers.properties = [](vsmsgbus::Properties&) {};
        handlers.policies = [](vsmsgbus::Policies&) {};
        handlers.updates.notify = [](vsmsgbus::UpdateNotice&) { return 0; };
        return handlers;
    }
};

TEST_F(KitFailure, OfASecondMachine) {
    EXPECT_EQ(FailureOf([] { const vsmsgbus::testing::Machine second; }),
              "making a machine: this process has a machine: destroy it first");
}

TEST_F(KitFailure, OfABuildThatIsNotThere) {
    EXPECT_THAT(FailureOf([&] { machine.InstallAgent("5.7.0", "nothing"); }),
                MatchesRegex("installing the agent 5\\.7\\.0: .*nothing.*"));
    EXPECT_EQ(FailureOf([&] { machine.Upgrade(""); }), "upgrading the agent to : no version was given");
    EXPECT_EQ(machine.Describe(id),
              "PRODUCT1000 is registered for nothing; no other product is registered; no agent is installed, 0 clients "
              "have started");
}

TEST_F(KitFailure, OfAProductThatIsNotRegisteredSaysWhichAreAndForWhat) {
    machine.InstallAgent();
    const Product other("PRODUCT_1000", Silent());
    EXPECT_EQ(FailureOf([&] { machine.WaitUntilRegistered(id, Service::Tasks, briefly); }),
              "waited 50 ms until PRODUCT1000 is registered for tasks: PRODUCT1000 is registered for nothing; "
              "PRODUCT_1000 is registered for properties, policies, updates and not for tasks; agent 5.7.0 (full) is "
              "installed, 1 client has started");
    EXPECT_EQ(FailureOf([&] { machine.WaitUntilRegistered("PRODUCT_1000", Service::Tasks, briefly); }),
              "waited 50 ms until PRODUCT_1000 is registered for tasks: PRODUCT_1000 is registered for properties, "
              "policies, updates and not for tasks; no other product is registered; agent 5.7.0 (full) is installed, "
              "1 client has started");
}

TEST_F(KitFailure, OfAnUpgradeThatTheModuleDoesNotSurvive) {
    machine.InstallAgent();
    const Product product(id, {.properties = TellOne});
    machine.Upgrade("5.8.0", "empty");
    machine.WaitUntilUnregistered(id, Service::Properties);
    EXPECT_EQ(FailureOf([&] { machine.WaitUntilRegistered(id, Service::Properties, briefly); }),
              "waited 50 ms until PRODUCT1000 is registered for properties: PRODUCT1000 is registered for nothing; no "
              "other product is registered; agent 5.8.0 (empty) is installed, 0 clients have started, none since the "
              "upgrade");
}

TEST_F(KitFailure, OfAProductThatStaysRegistered) {
    machine.InstallAgent();
    const Product product(id, {.properties = TellOne});
    EXPECT_EQ(FailureOf([&] { machine.WaitUntilUnregistered(id, Service::Properties, briefly); }),
              "waited 50 ms until PRODUCT1000 is no longer registered for properties: PRODUCT1000 is registered for "
              "properties and not for policies, tasks, updates; no other product is registered; agent 5.7.0 (full) is "
              "installed, 1 client has started");
}

TEST_F(KitFailure, OfAskingAProductThatIsNotRegistered) {
    const std::string there =
        "PRODUCT1000 is registered for nothing; no other product is registered; no agent is installed, 0 clients have "
        "started";
    EXPECT_EQ(FailureOf([&] { machine.AskProperties(id); }), "asking PRODUCT1000 for its properties: " + there);
    EXPECT_EQ(FailureOf([&] { machine.Notify(id); }), "notifying PRODUCT1000 of its policies: " + there);
    EXPECT_EQ(FailureOf([&] { machine.Update(id); }), "telling PRODUCT1000 of an update: " + there);
    EXPECT_EQ(FailureOf([&] { machine.GetValue(id, "Version"); }), "asking PRODUCT1000 for Version: " + there);
    EXPECT_EQ(FailureOf([&] { machine.SetValue(id, "Version", "1"); }), "setting Version of PRODUCT1000: " + there);
}

TEST_F(KitFailure, OfAProductWithoutProperties) {
    machine.InstallAgent();
    const Product product(id, Silent());
    EXPECT_EQ(FailureOf([&] { machine.AskProperties(id); }),
              "asking PRODUCT1000 for its properties: it answered 0 and gave 0 properties; it did not call "
              "ny_property_bag_add_property");
}

TEST_F(KitFailure, OfAProductWhosePropertiesTheAgentRefuses) {
    machine.InstallAgent();
    const Product product(id, {.properties = TellOne});
    machine.AskProperties(id);
    machine.Fail("ny_property_bag_add_property", 1, NY_OUT_OF_MEMORY);
    EXPECT_EQ(FailureOf([&] { machine.AskProperties(id); }),
              "asking PRODUCT1000 for its properties: it answered 0 and gave 0 properties; it called "
              "ny_property_bag_add_property 1 time, of which the agent refused 1, the last with code 4");
}

TEST_F(KitFailure, OfHandlersThatThrow) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    machine.InstallAgent();
    const Product product(id, {.properties =
                                   [](vsmsgbus::Properties& properties) {
                                       TellOne(properties);
                                       throw std::runtime_error("no disk");
                                   },
                               .policies = [](vsmsgbus::Policies&) { throw std::runtime_error("no disk"); }});
    EXPECT_EQ(FailureOf([&] { machine.AskProperties(id); }),
              "asking PRODUCT1000 for its properties: it answered 3 and gave 1 property; it called "
              "ny_property_bag_add_property 1 time");
    EXPECT_EQ(FailureOf([&] { machine.Notify(id); }), "notifying PRODUCT1000 of its policies: it answered 3");
}

TEST_F(KitFailure, OfHandlersThatDoNotReturn) {
    machine.InstallAgent();
    machine.SetTasks(R"([{"id": "scan", "product": "PRODUCT1000"}])");
    Event mayReturn;
    const auto wait = [&] { EXPECT_TRUE(mayReturn.Wait()); };
    vsmsgbus::Handlers handlers;
    handlers.properties = [&](vsmsgbus::Properties&) { wait(); };
    handlers.policies = [&](vsmsgbus::Policies&) { wait(); };
    handlers.tasks = [&](vsmsgbus::Task&) {
        wait();
        return vsmsgbus::TaskResult::Done;
    };
    handlers.updates.notify = [&](vsmsgbus::UpdateNotice&) {
        wait();
        return 0;
    };
    Product product(id, handlers);
    EXPECT_EQ(FailureOf([&] { machine.AskProperties(id, briefly); }),
              "waited 50 ms until PRODUCT1000 has given its properties: its handler has not returned");
    EXPECT_EQ(FailureOf([&] { machine.Notify(id, briefly); }),
              "waited 50 ms until PRODUCT1000 has taken its policies: its handler has not returned");
    EXPECT_EQ(FailureOf([&] { machine.RunTask("scan", briefly); }),
              "waited 50 ms until the product has answered to executing the task scan: its handler has not returned");
    EXPECT_EQ(FailureOf([&] { machine.Update(id, {}, briefly); }),
              "waited 50 ms until PRODUCT1000 has answered: its handler has not returned");
    mayReturn.Set();
    EXPECT_TRUE(product.Leave());
}

TEST_F(KitFailure, OfTextsThatAreNotUnderstood) {
    EXPECT_EQ(FailureOf([&] { machine.SetPolicies("{}"); }),
              "setting the policies: this is not of the form that ny_sim_policy.h describes: {}");
    EXPECT_EQ(FailureOf([&] { machine.SetTasks("{}"); }),
              "setting the tasks: this is not of the form that ny_sim_scheduler.h describes: {}");
    EXPECT_EQ(FailureOf([&] { machine.GetValue(id, "\xFF"); }),
              "asking PRODUCT1000 for \xFF: a text is no UTF-8: {\"call\": \"get product info\", \"product\": "
              "\"PRODUCT1000\", \"second\": \"\", \"key\": \"\xFF\"}");
}

TEST_F(KitFailure, OfTasksThatCannotBeRun) {
    machine.InstallAgent();
    machine.SetTasks(R"([{"id": "scan", "product": "PRODUCT1000"}])");
    const Product product(id, Silent());
    EXPECT_EQ(FailureOf([&] { machine.RunTask("walk"); }),
              "executing the task walk: the agent has no such task: see SetTasks");
    EXPECT_EQ(FailureOf([&] { machine.RunTask("scan"); }),
              "executing the task scan: its product is not registered for tasks; PRODUCT1000 is registered for "
              "properties, policies, updates and not for tasks; agent 5.7.0 (full) is installed");
    EXPECT_EQ(FailureOf([&] { machine.StopTask("walk"); }),
              "stopping the task walk: the agent has no such task: see SetTasks");
    EXPECT_EQ(FailureOf([&] { machine.WaitForTask("other"); }), "waiting for the task other: it was not started");
}

TEST_F(KitFailure, OfTasksThatTheAgentCannotName) {
    machine.InstallAgent();
    machine.SetTasks(R"([{"id": "scan", "product": "PRODUCT1000", "accessors": {"get_id": 77}}])");
    const Product product(id, {.tasks = [](vsmsgbus::Task&) { return vsmsgbus::TaskResult::Done; }});
    EXPECT_EQ(FailureOf([&] { machine.RunTask("scan"); }), "executing the task scan: the product answered 3");
}

TEST_F(KitFailure, OfTasksThatDoNotEnd) {
    machine.InstallAgent();
    machine.SetTasks(R"([{"id": "scan", "product": "PRODUCT1000"}, {"id": "silent", "product": "PRODUCT1000"}])");
    // Long enough for a task to begin on a busy machine.
    constexpr std::chrono::milliseconds patience{500};
    Event mayEnd;
    const Product product(id, {.tasks = [&](vsmsgbus::Task&) {
                              return vsmsgbus::OnOwnThread([&](const vsmsgbus::TaskRun&) {
                                  EXPECT_TRUE(mayEnd.Wait());
                                  return vsmsgbus::TaskResult::Done;
                              });
                          }});
    EXPECT_EQ(FailureOf([&] { machine.RunTask("scan", patience); }),
              "waited 500 ms until the task scan has ended: it was reported 2 (goes on)");
    machine.Fail("ny_scheduler_update_task_status", 1, NY_OUT_OF_MEMORY);
    EXPECT_EQ(FailureOf([&] { machine.RunTask("silent", patience); }),
              "waited 500 ms until the task silent has ended: nothing was reported of it");
    mayEnd.Set();
    EXPECT_EQ(machine.WaitForTask("scan"), vsmsgbus::testing::TaskEnd::Done);
}

TEST_F(KitFailure, OfAFaultThatCannotBe) {
    EXPECT_EQ(FailureOf([&] { machine.Fail("ny_property"); }),
              "having a call fail: the simulated agent has no function ny_property");
    EXPECT_EQ(FailureOf([&] { machine.Fail("ny_property_bag_add_property", 0); }),
              "having a call of ny_property_bag_add_property fail: the calls are counted from 1");
}

TEST_F(KitFailure, OfAPropertyThatWasNotGiven) {
    machine.InstallAgent();
    const Product product(id, {.properties = TellOne});
    EXPECT_EQ(FailureOf([&] { machine.AskProperties(id).Value("General", "State"); }),
              "there is no property General: State; given were General: Version = 1.0");
}

TEST_F(KitFailure, OfAProductThatHasNotLeft) {
    machine.InstallAgent();
    const Product product(id, {.properties = TellOne});
    EXPECT_EQ(FailureOf([&] { machine.ExpectNothingLeft(briefly); }),
              "nothing of the agent was to be left: PRODUCT1000 is registered for properties and not for policies, "
              "tasks, updates; 1 client has started; 1 handle is alive (1 client)");
}

TEST_F(KitFailure, OfHandlesThatWereLeftAndMisused) {
    ny_logger_t* logger = nullptr;
    ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
    EXPECT_EQ(FailureOf([&] { machine.ExpectNothingLeft(briefly); }),
              "nothing of the agent was to be left: 1 handle is alive (1 logger)");
    ny_sim_logger_release(logger);
    ny_sim_logger_release(logger);
    EXPECT_THAT(FailureOf([&] { machine.ExpectNothingLeft(briefly); }),
                MatchesRegex("nothing of the agent was to be left: the agent was misused 1 time, at last "
                             "ny_sim_logger_release: the logger handle 0x\\w+ is not alive"));
    ny_sim_reset();
}

}  // namespace
