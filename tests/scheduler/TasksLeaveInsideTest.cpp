// The reports about a task when the last product leaves inside one of its operations.
#include "scheduler/TaskTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TasksLeaveInside : public TaskTest {
protected:
    TaskEnforcerRegistration registration{productId, enforcer};
};

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
    const OnPurpose mistakes{"CALLBACK-THREW"};
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

}  // namespace
