// A module reports how a task stands, with UpdateMsgbusTaskStatus.
#include <climits>
#include <thread>

#include "scheduler/TaskTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class StatusReport : public TaskTest {};

TEST_F(StatusReport, Tells2And4And6AsTheyAreAndElse3) {
    const OnPurpose mistakes{"TASK-STATUS"};
    for (const int status : {-1, 0, 1, 2, 3, 4, 5, 6, 7, INT_MAX, INT_MIN}) {
        UpdateMsgbusTaskStatus(L"task", status);
        const int told = status == 2 || status == 4 || status == 6 ? status : 3;
        EXPECT_THAT(TakeReports(), ElementsAre("task " + std::to_string(told))) << status;
    }
}

TEST_F(StatusReport, NeedsNoEnforcerAndNoKnownTask) {
    UpdateMsgbusTaskStatus(L"nobody's", 4);
    UpdateMsgbusTaskStatus(L"", 4);
    EXPECT_THAT(TakeReports(), ElementsAre("nobody's 4", " 4"));
}

TEST_F(StatusReport, OfNullIsNone) {
    ny_sim_clear_calls();
    UpdateMsgbusTaskStatus(nullptr, 4);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(StatusReport, TellsTheLowByteOfEachUnit) {
    constexpr wchar_t id[] = {L'a', 0x00FC, 0x0141, 0x2D62, 0xFFFF, 0};
    UpdateMsgbusTaskStatus(id, 4);
    EXPECT_THAT(TakeReports(), ElementsAre("a\xFC\x41\x62\xFF 4"));
    // A low byte of zero ends the text for the agent.
    constexpr wchar_t zero[] = {L'a', 0x0100, L'b', 0};
    UpdateMsgbusTaskStatus(zero, 4);
    EXPECT_THAT(TakeReports(), ElementsAre("a 4"));
}

TEST_F(StatusReport, FromInsideAnExecutionComesBeforeItsOwn) {
    enforcer.execute = [](ITaskBag&) {
        UpdateMsgbusTaskStatus(L"task", 6);
        std::thread([] { UpdateMsgbusTaskStatus(L"task", 2); }).join();
        return 4;
    };
    const TaskEnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(TakeReports(), ElementsAre("task 6", "task 2", "task 4"));
}

TEST_F(StatusReport, AfterAnExecutionThatGoesOn) {
    const OnPurpose mistakes{"TASK-ANSWER"};
    enforcer.execute = [](ITaskBag&) { return 0; };
    const TaskEnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    std::thread([] { UpdateMsgbusTaskStatus(L"task", 4); }).join();
    EXPECT_THAT(TakeReports(), ElementsAre("task 2", "task 4"));
}

TEST_F(StatusReport, ThatTheAgentRefusesIsLostWithoutAWord) {
    for (const int32_t code : {77, -5, 705}) {
        ASSERT_EQ(ny_sim_fail_call("ny_scheduler_update_task_status", 1, code, NY_SIM_ONCE), NY_OK);
        UpdateMsgbusTaskStatus(L"task", 4);
    }
    EXPECT_THAT(TakeReports(), IsEmpty());
    UpdateMsgbusTaskStatus(L"task", 4);
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
}

TEST_F(StatusReport, WhileNoProductIsInTheBridgeIsNone) {
    const OnPurpose mistakes{"NOT-ENTERED"};
    product.Exit();
    ny_sim_clear_calls();
    UpdateMsgbusTaskStatus(L"task", 4);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(StatusReport, OfAProductWithoutTasksIsToldAllTheSame) {
    product.Exit();
    const Product other("PRODUCT2000", nullptr, VsMsgbusServiceProperty);
    UpdateMsgbusTaskStatus(L"task", 4);
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
}

TEST_F(StatusReport, WhileTheAgentIsAwayIsNone) {
    ny_sim_clear_calls();
    environment.Installer().DeleteVersion();
    ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
    UpdateMsgbusTaskStatus(L"task", 4);
    EXPECT_THAT(TakeReports(), IsEmpty());
    UpgradeAndWait("5.7.1", "full", 1, "ny_scheduler_register_task_callbacks");
    UpdateMsgbusTaskStatus(L"task", 6);
    EXPECT_THAT(TakeReports(), ElementsAre("task 6"));
}

}  // namespace
