// Products leave and enforcers are removed while a task is at work, and the agent changes under it.
#include <thread>

#include "scheduler/TaskTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TasksLeaveInside : public TaskTest {
protected:
    // An execution that is inside from `isInside` until `mayLeave`.
    void Block() {
        enforcer.execute = [this](ITaskBag& bag) {
            isInside.Set();
            EXPECT_TRUE(mayLeave.Wait());
            int32_t depth = 0;
            EXPECT_TRUE(bag.GetInteger(L"Scan", L"Depth", &depth));
            order.Add("execution is out");
            return 4;
        };
    }

    Event isInside;
    Event mayLeave;
    LineLog order;
    TaskEnforcerRegistration registration{productId, enforcer};
};

TEST_F(TasksLeaveInside, RemoveInsideAnExecutionReturnsAtOnceAndIsTheLastOfIt) {
    enforcer.execute = [this](ITaskBag& bag) {
        registration.Remove();
        EXPECT_EQ(bag.CountEntries(), 2U);
        return 4;
    };
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("execute task"));
    EXPECT_THAT(TakeReports(), ElementsAre("task 4", "task 2"));
}

TEST_F(TasksLeaveInside, RemoveOnAnotherThreadReturnsWhenTheExecutionIsOut) {
    Block();
    const TaskRequest request("task");
    ASSERT_TRUE(isInside.Wait());
    Event isRemoved;
    std::thread remover([&] {
        registration.Remove();
        order.Add("removed");
        isRemoved.Set();
    });
    EXPECT_FALSE(isRemoved.Wait(std::chrono::milliseconds(50)));
    mayLeave.Set();
    remover.join();
    EXPECT_EQ(request.Answer(), NY_OK);
    EXPECT_THAT(order.Lines(), ElementsAre("execution is out", "removed"));
}

// The client, the task's object and the executor are gone when the execution comes back; the agent is not told.
TEST_F(TasksLeaveInside, ExitOfTheLastProductEndsTheBridgeUnderTheExecution) {
    enforcer.execute = [this](ITaskBag&) {
        product.Exit();
        EXPECT_NE(::GetModuleHandleA("ny_client.dll"), nullptr) << "the agent's thread returns into it";
        UpdateMsgbusTaskStatus(L"task", 6);
        return 4;
    };
    enforcer.updateStatus = enforcer.execute;
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(TakeReports(), IsEmpty());
    EXPECT_EQ(AnswerOf("task"), NY_SIM_NOT_REGISTERED);
}

TEST_F(TasksLeaveInside, ExitOfTheLastProductDuringEveryOtherOperation) {
    product.Exit();
    Product* leaving = nullptr;
    const TaskEnforcer::Operation leave = [&](ITaskBag&) -> int32_t {
        leaving->Exit();
        throw 42;
    };
    enforcer.updateStatus = enforcer.stop = enforcer.remove = leave;
    for (const auto operation : {NY_SIM_TASK_STOP, NY_SIM_TASK_REMOVE, NY_SIM_TASK_UPDATE_STATUS}) {
        Product again(productId, nullptr, VsMsgbusServiceTask);
        leaving = &again;
        EXPECT_EQ(AnswerOf("task", operation), NY_UNEXPECTED);
        EXPECT_TRUE(AgentIsLetGo());
    }
    EXPECT_THAT(TakeReports(), IsEmpty());
}

// A report with the old client would name a handle that is dead.
TEST_F(TasksLeaveInside, ExitAndEntryInsideAnExecutionReportsNothingThroughTheNewClient) {
    VsMsgbus* instance = nullptr;
    enforcer.execute = [&](ITaskBag&) {
        product.Exit();
        EXPECT_TRUE(VsMsgbusEntry(productId, VsMsgbusServiceTask, nullptr, &instance));
        UpdateMsgbusTaskStatus(L"task", 6);
        return 4;
    };
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(TakeReports(), ElementsAre("task 6"));
    enforcer.execute = {};
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
    EXPECT_TRUE(VsMsgbusExit(productId, instance));
}

TEST_F(TasksLeaveInside, ExitOfOneOfTwoProductsLeavesTheReportWorking) {
    const Product staying("PRODUCT2000");
    enforcer.execute = [this](ITaskBag&) {
        product.Exit();
        return 4;
    };
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
}

// The agent lets go of a product when no callback of it runs any more; the execution's report still arrives.
TEST_F(TasksLeaveInside, ExitOnAnotherThreadReturnsWhenTheExecutionIsOut) {
    Block();
    const TaskRequest request("task");
    ASSERT_TRUE(isInside.Wait());
    Event isUnregistering;
    const AgentHook hook("ny_scheduler_unregister_task_callbacks", [&] { isUnregistering.Set(); });
    std::thread leaver([&] {
        product.Exit();
        order.Add("left");
    });
    EXPECT_TRUE(isUnregistering.Wait());
    mayLeave.Set();
    leaver.join();
    EXPECT_EQ(request.Answer(), NY_OK);
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
    EXPECT_THAT(order.Lines(), ElementsAre("execution is out", "left"));
}

TEST_F(TasksLeaveInside, ExitThatTheExecutionItselfStartsOnAnotherThread) {
    std::thread leaver;
    Event isUnregistering;
    const AgentHook hook("ny_scheduler_unregister_task_callbacks", [&] { isUnregistering.Set(); });
    enforcer.execute = [&](ITaskBag&) {
        leaver = std::thread([&] { product.Exit(); });
        EXPECT_TRUE(isUnregistering.Wait());
        return 4;
    };
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    leaver.join();
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
}

TEST_F(TasksLeaveInside, UpgradeOfTheAgentWaitsForTheExecution) {
    Block();
    const TaskRequest request("task");
    ASSERT_TRUE(isInside.Wait());
    Event isUnregistering;
    const AgentHook unregistering("ny_scheduler_unregister_task_callbacks", [&] { isUnregistering.Set(); });
    const AgentHook releasing("ny_client_handler_release", [&] { order.Add("client is released"); });
    ny_sim_clear_calls();
    environment.UpgradeAgent("5.7.1");
    ASSERT_TRUE(SeenByWatcher([&](auto limit) { return isUnregistering.Wait(limit); }));
    mayLeave.Set();
    EXPECT_EQ(request.Answer(), NY_OK);
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
    ASSERT_TRUE(WaitForAgentCalls("ny_scheduler_register_task_callbacks"));
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(order.Take(), ElementsAre("execution is out", "client is released", "execution is out"));
}

}  // namespace
