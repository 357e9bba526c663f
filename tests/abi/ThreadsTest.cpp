// Threads of the agent's and of the module's in the bridge at once.
#include <algorithm>
#include <thread>

#include "abi/AbiModuleTest.h"
#include "support/AgentTasks.h"
#include "support/AgentUpdate.h"
#include "support/PolicyNotice.h"

namespace {

constexpr const char* services[] = {"Properties", "Policies", "Tasks", "Updates"};

class Threads : public AbiTest {
protected:
    void SetUp() override {
        environment.InstallAgent();
        ASSERT_EQ(ny_sim_set_all_information(R"({"Version": "5.7.0.1", "AgentMode": "1"})"), NY_OK);
        SetTasks(
            R"([{"id": "task", "product": "ABI1000", "name": "The task", "settings": {"Scan": {"Depth": "12"}}}])");
        for (const char* service : services) {
            ASSERT_TRUE(module.Offer(service, id));
        }
        ASSERT_TRUE(module.Enter(
            id, VsMsgbusServiceProperty | VsMsgbusServicePolicy | VsMsgbusServiceTask | VsMsgbusServiceUpdate));
    }

    void TearDown() override {
        EXPECT_TRUE(module.Exit(id));
        for (const char* service : services) {
            EXPECT_TRUE(module.Withdraw(service, id));
        }
        AbiTest::TearDown();
    }

    size_t CountOf(const std::vector<std::string>& lines, const std::string& line) {
        return static_cast<size_t>(std::count(lines.begin(), lines.end(), line));
    }
};

TEST_F(Threads, AreAllAnsweredWhileProductsComeAndGo) {
    constexpr size_t rounds = 50;
    std::vector<std::thread> threads;
    const auto repeat = [&](auto&& action) {
        threads.emplace_back([action] {
            for (size_t round = 0; round < rounds; ++round) {
                action();
            }
        });
    };
    repeat([] { EXPECT_EQ(Ask(id), (std::vector<std::string>{"answer 0", "General:Version=1.0"})); });
    repeat([] { EXPECT_EQ(PolicyNotice(id).Answer(), NY_OK); });
    repeat([] { EXPECT_EQ(AnswerOf("task"), NY_OK); });
    repeat([] { EXPECT_EQ(Update(NotifyCall(id)), "answer 0, result 20"); });
    repeat([this] { module.Call<decltype(ModuleReadInformation)>("ModuleReadInformation"); });
    repeat([this] { module.Call<decltype(ModuleUseCrypto)>("ModuleUseCrypto"); });
    repeat([this] {
        EXPECT_TRUE(module.Enter("ABI2000", VsMsgbusServiceProperty));
        EXPECT_TRUE(module.Exit("ABI2000"));
    });
    for (std::thread& thread : threads) {
        thread.join();
    }
    const auto lines = module.log.Take();
    for (const char* line :
         {"CollectProperties true", "EnforcePolicy ABI1000", "EnumeratePolicies answers 1", "ExecuteTask task",
          "GetTaskName answers 1: The task", "UpdateNotify text 2, text 4, text 3, 7", "it is a secret",
          "VsKitMsgbusManagedMode answers 1: 1"}) {
        EXPECT_EQ(CountOf(lines, line), rounds) << line;
    }
}

}  // namespace
