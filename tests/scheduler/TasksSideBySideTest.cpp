// Tasks, reports, registrations and entries at the same time.
#include <atomic>
#include <memory>
#include <thread>

#include "scheduler/TaskTest.h"
#include "support/Checkpoint.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;

namespace {

class TasksSideBySide : public TaskTest {
protected:
    TaskEnforcerRegistration registration{productId, enforcer};
};

TEST_F(TasksSideBySide, ATaskIsStoppedWhileItIsExecuted) {
    Event isExecuting;
    Event isToldToStop;
    enforcer.execute = [&](ITaskBag&) {
        isExecuting.Set();
        EXPECT_TRUE(isToldToStop.Wait());
        return 3;
    };
    enforcer.stop = [&](ITaskBag&) {
        isToldToStop.Set();
        return 4;
    };
    const TaskRequest execution("task");
    ASSERT_TRUE(isExecuting.Wait());
    EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_STOP), NY_OK);
    EXPECT_EQ(execution.Answer(), NY_OK);
    EXPECT_THAT(TakeReports(), ElementsAre("task 3"));
}

// Each execution leaves only when the other one has come.
TEST_F(TasksSideBySide, TwoTasksOfOneProductAreExecuted) {
    Event first;
    Event second;
    std::atomic<int> calls = 0;
    enforcer.execute = [&](ITaskBag&) {
        const bool isFirst = calls++ == 0;
        (isFirst ? first : second).Set();
        EXPECT_TRUE((isFirst ? second : first).Wait());
        return 4;
    };
    const TaskRequest one("task");
    const TaskRequest two("second");
    EXPECT_EQ(one.Answer(), NY_OK);
    EXPECT_EQ(two.Answer(), NY_OK);
}

TEST_F(TasksSideBySide, ABusyTaskIsNoReasonForReportsAndCookiesToWait) {
    Checkpoint held;
    enforcer.execute = [&](ITaskBag&) {
        held.Stop();
        return 4;
    };
    const TaskRequest busy("task");
    ASSERT_TRUE(held.isInside.Wait());
    TaskEnforcer others;
    const TaskEnforcerRegistration ofOthers("PRODUCT2000", others);
    UpdateMsgbusTaskStatus(L"other", 6);
    VsKitMsgbusFreeTaskCookie(L"PRODUCT2000", nullptr);
    EXPECT_THAT(others.log.Lines(), ElementsAre("free cookie 0"));
    EXPECT_THAT(TakeReports(), ElementsAre("other 6"));
    EXPECT_FALSE(busy.IsAnsweredWithin(std::chrono::milliseconds(0)));
    held.mayGoOn.Set();
    EXPECT_EQ(busy.Answer(), NY_OK);
}

// Threads that report, run tasks, register and remove while a product comes and goes and the agent is upgraded.
class TaskCrowd : public AgentWithTasksTest {
protected:
    static constexpr int rounds = 150;

    static void Repeat(const std::function<void()>& work) {
        for (int i = 0; i < rounds; ++i) {
            work();
        }
    }
};

TEST_F(TaskCrowd, OfThreadsUsesNothingThatIsGone) {
    const OnPurpose mistakes{"NOT-ENTERED"};
    std::atomic<bool> isRegistered = false;
    TaskEnforcer enforcer([&](ITaskBag& bag) {
        EXPECT_TRUE(isRegistered) << "called after Remove";
        EXPECT_EQ(bag.CountEntries(), 2U);
        return 4;
    });
    std::vector<std::thread> threads;
    threads.emplace_back([] { Repeat([] { const Product guest(productId, nullptr, VsMsgbusServiceTask); }); });
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([] { Repeat([] { UpdateMsgbusTaskStatus(L"task", 6); }); });
        threads.emplace_back([] {
            Repeat([] {
                const int32_t answer = AnswerOf("task");
                EXPECT_TRUE(answer == NY_OK || answer == NY_SIM_NOT_REGISTERED) << answer;
            });
        });
    }
    threads.emplace_back([&] {
        Repeat([&] {
            isRegistered = true;
            TaskEnforcerRegistration registration(productId, enforcer);
            VsKitMsgbusFreeTaskCookie(wideProductId, nullptr);
            registration.Remove();
            isRegistered = false;
        });
    });
    environment.UpgradeAgent("5.7.1");
    for (std::thread& thread : threads) {
        thread.join();
    }
    const Product product(productId, nullptr, VsMsgbusServiceTask);
    TakeReports();
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(TakeReports(), ElementsAre("task 2"));
}

}  // namespace
