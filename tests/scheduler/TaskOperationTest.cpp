// A module's answers to the agent's calls, and the answers and reports that the agent gets. The tasks are those of
// TaskTest.h: "task" and "second" are for PRODUCT1000, "other" is for PRODUCT2000.
#include <climits>

#include "scheduler/TaskTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// From -1 to 7, and what no status can be.
constexpr int32_t moduleAnswers[] = {-1, 0, 1, 2, 3, 4, 5, 6, 7, INT_MAX, INT_MIN};

class TaskOperation : public TaskTest {
protected:
    void SetAll(const TaskEnforcer::Operation& operation) {
        enforcer.execute = operation;
        enforcer.updateStatus = operation;
        enforcer.stop = operation;
        enforcer.remove = operation;
    }

    TaskEnforcerRegistration registration{productId, enforcer};
};

TEST_F(TaskOperation, ExecuteReports4And3AsTheyAreAndElse2) {
    const OnPurpose mistakes{"TASK-ANSWER", "TASK-WITHOUT-END"};
    for (const int32_t answer : moduleAnswers) {
        enforcer.execute = [answer](ITaskBag&) { return answer; };
        EXPECT_EQ(AnswerOf("task"), NY_OK) << answer;
        const int32_t status = answer == 3 || answer == 4 ? answer : 2;
        EXPECT_THAT(TakeReports(), ElementsAre("task " + std::to_string(status))) << answer;
    }
}

TEST_F(TaskOperation, UpdateStatusReports4And2AsTheyAreAndElse3) {
    const OnPurpose mistakes{"TASK-STATE-ANSWER"};
    for (const int32_t answer : moduleAnswers) {
        enforcer.updateStatus = [answer](ITaskBag&) { return answer; };
        EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_UPDATE_STATUS), NY_OK) << answer;
        const int32_t status = answer == 2 || answer == 4 ? answer : 3;
        EXPECT_THAT(TakeReports(), ElementsAre("task " + std::to_string(status))) << answer;
    }
}

TEST_F(TaskOperation, StopAndRemoveReportNothing) {
    for (const int32_t answer : moduleAnswers) {
        SetAll([answer](ITaskBag&) { return answer; });
        EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_STOP), NY_OK) << answer;
        EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_REMOVE), NY_OK) << answer;
    }
    EXPECT_THAT(TakeReports(), IsEmpty());
}

TEST_F(TaskOperation, OfATaskThatDoesNotTellItsIdIsNotForTheModule) {
    for (const char* behaviour : {"\"absent\"", "77", "-5", "2"}) {
        SetTasks(std::string(R"([{"id": "task", "product": "PRODUCT1000", "accessors": {"get_id": )") + behaviour +
                 "}}]");
        for (const auto operation : allTaskOperations) {
            EXPECT_EQ(AnswerOf("task", operation), NY_UNEXPECTED);
        }
    }
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
    EXPECT_THAT(TakeReports(), IsEmpty());
}

TEST_F(TaskOperation, OfATaskWhoseIdIsNullIsOneOfAnEmptyId) {
    SetTasks(R"([{"id": "task", "product": "PRODUCT1000", "accessors": {"get_id": "null"}}])");
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("execute "));
    EXPECT_THAT(TakeReports(), ElementsAre(" 4"));
}

TEST_F(TaskOperation, ReadsTheIdAnewForItsReport) {
    ny_sim_clear_calls();
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_EQ(ny_sim_call_count("ny_task.get_id"), 2U);
    ASSERT_EQ(ny_sim_fail_call("ny_task.get_id", 2, 77, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(AnswerOf("task"), NY_UNEXPECTED);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("execute task", "execute task"));
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
}

TEST_F(TaskOperation, GivesIdsOfEveryAlphabet) {
    for (const std::string id : {"\xC3\x9C %s", "\xE4\xBB\xBB\xE5\x8A\xA1", "\xF0\x9F\x98\x80", ""}) {
        SetTasks(R"([{"id": ")" + id + R"(", "product": "PRODUCT1000"}])");
        EXPECT_EQ(AnswerOf(id), NY_OK);
        EXPECT_THAT(enforcer.log.Take(), ElementsAre("execute " + id));
        EXPECT_THAT(TakeReports(), ElementsAre(id + " 4"));
    }
}

TEST_F(TaskOperation, IsGivenToTheProductThatTheTaskIsFor) {
    TaskEnforcer others;
    const Product other("PRODUCT2000", nullptr, VsMsgbusServiceTask);
    const TaskEnforcerRegistration ofOthers("PRODUCT2000", others);
    EXPECT_EQ(AnswerOf("other"), NY_OK);
    EXPECT_EQ(AnswerOf("second"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("execute second"));
    EXPECT_THAT(others.log.Lines(), ElementsAre("execute other"));
}

TEST_F(TaskOperation, AnswersTheAgentAlsoWhenTheReportIsRefused) {
    ASSERT_EQ(ny_sim_fail_call("ny_scheduler_update_task_status", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_UPDATE_STATUS), NY_OK);
    EXPECT_THAT(TakeReports(), IsEmpty());
}

}  // namespace
