// The agent functions that are called for a task; tests/flows has every one of them fail.
#include "scheduler/TaskTest.h"

namespace {

class TaskCalls : public TaskTest {};

// The agent's functions that one execution calls. The module is called after the first `callsBeforeModule` of them.
constexpr const char* executionCalls[] = {
    // the product and the task as wide texts
    "ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string", "ny_wbuffer_get_string",
    "ny_wbuffer_release", "ny_variant_release", "ny_task.get_id", "ny_variant_create_from_string",
    "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string", "ny_wbuffer_get_string", "ny_wbuffer_release",
    "ny_variant_release",
    // the report
    "ny_task.get_id", "ny_scheduler_update_task_status"};
constexpr size_t callsBeforeModule = 13;

TEST_F(TaskCalls, OfAnExecutionAreThese) {
    const TaskEnforcerRegistration registration(productId, enforcer);
    size_t atModule = 0;
    enforcer.execute = [&](ITaskBag&) {
        atModule = ny_sim_call_count(nullptr);
        return 4;
    };
    ny_sim_clear_calls();
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(AgentCalls(), testing::ElementsAreArray(executionCalls));
    EXPECT_EQ(atModule, callsBeforeModule);
}

}  // namespace
