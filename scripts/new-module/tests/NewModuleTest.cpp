// The module on a machine of the test's own, which has the simulated agent.
#include "NewModule.h"

#include <string>

#include <gtest/gtest.h>
#include <vsmsgbus_testing.hpp>

using vsmsgbus::testing::Machine;
using vsmsgbus::testing::Service;
using vsmsgbus::testing::TaskEnd;

namespace {

class NewModuleTest : public testing::Test {
protected:
    NewModuleTest() {
        machine.InstallAgent();
        EXPECT_TRUE(NewModuleLoad());
    }

    void TearDown() override {
        EXPECT_TRUE(NewModuleUnload());
        machine.ExpectNothingLeft();
    }

    static std::string Task(const std::string& id, int steps) {
        return R"({"id": ")" + id + R"(", "product": ")" + productId + R"(", "settings": {"General": {"Steps": )" +
               std::to_string(steps) + "}}}";
    }

    Machine machine;
};

TEST_F(NewModuleTest, TellsItsVersion) {
    EXPECT_EQ(machine.AskProperties(productId).Value("General", "Version"), "1.0");
}

TEST_F(NewModuleTest, TakesItsPolicies) {
    machine.SetPolicies(std::string(R"([{"softwareId": ")") + productId +
                        R"(", "sections": [{"name": "General", "settings": {"Level": "7"}}]}])");
    machine.Notify(productId);
    EXPECT_EQ(machine.AskProperties(productId).Value("General", "Level"), "7");
}

TEST_F(NewModuleTest, RunsTasks) {
    machine.SetTasks("[" + Task("short", 3) + "]");
    EXPECT_TRUE(machine.RunTask("short") == TaskEnd::Done);
}

TEST_F(NewModuleTest, StopsTasks) {
    machine.SetTasks("[" + Task("endless", 2000000000) + "]");
    machine.StartTask("endless");
    EXPECT_TRUE(machine.StopTask("endless") == TaskEnd::Failed);
}

TEST_F(NewModuleTest, HearsOfUpdatesAndAnswersForItsVersion) {
    EXPECT_EQ(machine.Update(productId), 0);
    EXPECT_EQ(machine.GetValue(productId, "Version").value_or("none"), "1.0");
    EXPECT_EQ(machine.GetValue(productId, "Nothing").value_or("none"), "none");
}

TEST_F(NewModuleTest, IsThereAfterAnUpgradeOfTheAgent) {
    machine.Upgrade("5.8.0");
    machine.WaitUntilRegistered(productId, Service::Properties);
    EXPECT_EQ(machine.AskProperties(productId).Value("General", "Version"), "1.0");
}

}  // namespace
