// The texts about tasks, which the bridge composes and then drops. They spell "excpetion" like this.
#include <functional>
#include <map>
#include <stdexcept>

#include "scheduler/TaskTest.h"
#include "support/UnloggedTexts.h"
#include "values/AgentException.h"

using corvane::ny::utils::exception;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TaskText : public TaskTest {
protected:
    std::vector<std::string> Texts(ny_sim_task_operation operation, const TaskEnforcer::Operation& module) {
        enforcer.execute = enforcer.updateStatus = enforcer.stop = enforcer.remove = module;
        const TaskEnforcerRegistration registration(productId, enforcer);
        dropped.log.Take();
        AnswerOf("task", operation);
        return dropped.log.Take();
    }

    std::vector<std::string> TextsInside(const std::function<void(ITaskBag&)>& body) {
        return Texts(NY_SIM_TASK_STOP, [&](ITaskBag& bag) {
            body(bag);
            return 4;
        });
    }

    static TaskEnforcer::Operation Answering(int32_t answer) {
        return [answer](ITaskBag&) { return answer; };
    }
    static TaskEnforcer::Operation Throwing(int32_t code) {
        return [code](ITaskBag&) -> int32_t { throw exception(code); };
    }
    static TaskEnforcer::Operation ThrowingAnother() {
        return [](ITaskBag&) -> int32_t { throw std::runtime_error("a reason of its own"); };
    }

    UnloggedTexts dropped;
};

// An operation, the beginning of its failure's text, and the texts of the module's answers.
struct TaskFailure {
    const char* name;
    ny_sim_task_operation operation;
    std::string head;
    std::map<int32_t, std::string> answers;
};

const TaskFailure allTaskFailures[] = {
    {"Executions",
     NY_SIM_TASK_EXECUTE,
     "Failed to execute the task task",
     {{4, "Successfully executed the task task"}, {3, "Failed to execute the task task"}}},
    {"Stops", NY_SIM_TASK_STOP, "Failed to stop the task task", {{3, "Failed to stop the task task"}}},
    {"Removals", NY_SIM_TASK_REMOVE, "Failed to remove the task task", {{3, "Failed to remove the task task"}}},
    {"StatusUpdates", NY_SIM_TASK_UPDATE_STATUS, "Failed to update the task status task", {}},
};

void PrintTo(const TaskFailure& failure, std::ostream* stream) {
    *stream << failure.name;
}

class TaskTextOf : public TaskText, public testing::WithParamInterface<TaskFailure> {};

TEST_P(TaskTextOf, AnswersAndExceptions) {
    const auto& [name, operation, head, answers] = GetParam();
    const std::string forProduct = " for product id PRODUCT1000";
    for (int32_t answer = -1; answer <= 7; ++answer) {
        const auto told = answers.find(answer);
        EXPECT_EQ(Texts(operation, Answering(answer)),
                  told != answers.end() ? std::vector{told->second + forProduct} : std::vector<std::string>())
            << answer;
    }
    for (const int32_t code : {77, -5}) {
        EXPECT_THAT(Texts(operation, Throwing(code)),
                    ElementsAre(head + forProduct + ", excpetion [" + std::to_string(code) + "]"));
    }
    EXPECT_THAT(Texts(operation, ThrowingAnother()), ElementsAre(head + forProduct + " due to unknown exception"));
}

INSTANTIATE_TEST_SUITE_P(All, TaskTextOf, testing::ValuesIn(allTaskFailures),
                         [](const testing::TestParamInfo<TaskFailure>& tested) { return tested.param.name; });

TEST_F(TaskText, OfTasksWithoutAnEnforcerIsNone) {
    for (const auto operation : allTaskOperations) {
        EXPECT_EQ(AnswerOf("task", operation), NY_OK);
    }
    EXPECT_THAT(dropped.log.Take(), testing::Not(testing::Contains(testing::HasSubstr("task"))));
}

TEST_F(TaskText, OfReportsThatTheAgentRefuses) {
    ASSERT_EQ(ny_sim_fail_call("ny_scheduler_update_task_status", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    EXPECT_THAT(Texts(NY_SIM_TASK_EXECUTE, Answering(0)), ElementsAre("Failed to update the task status, error  [77]"));
    UpdateMsgbusTaskStatus(L"task", 4);
    EXPECT_THAT(dropped.log.Take(), ElementsAre("Failed to update the task status, error  [77]"));
}

TEST_F(TaskText, OfSettings) {
    constexpr char expected[] = "Failed to get the value for setting name \xC3\x9C %s, exception 1";
    constexpr wchar_t name[] = L"\u00DC %s";
    bool boolean = false;
    int32_t integer = 0;
    VsKitMsgbus::lpc_buffer text;
    EXPECT_THAT(TextsInside([&](ITaskBag& bag) {
                    bag.GetBoolean(L"Scan", name, &boolean);
                    bag.GetText(L"none", name, &text);
                    bag.GetInteger(L"Scan", name, &integer);
                }),
                ElementsAre(expected, expected, expected));
    EXPECT_THAT(TextsInside([&](ITaskBag& bag) {
                    bag.GetBoolean(L"", name, &boolean);
                    bag.GetText(L"Scan", nullptr, &text);
                    bag.GetInteger(nullptr, name, &integer);
                }),
                IsEmpty());
}

// Code 2 says that the task lacks the accessor. CountEntries fails with 77 and composes no text.
TEST_F(TaskText, OfTasksThatLackAccessors) {
    VsKitMsgbus::lpc_buffer name;
    SettingVisitor visitor;
    SetTasks(R"([{"id": "task", "product": "PRODUCT1000", "settings": {"Scan": {}},
                  "accessors": {"get_name": "absent", "get_section": "absent", "get_settings": 77,
                                "get_setting": "absent"}}])");
    EXPECT_THAT(TextsInside([&](ITaskBag& bag) {
                    bag.GetTaskName(&name);
                    bag.IterateSettings(&visitor, L"Scan");
                    bag.GetText(L"Scan", L"Name", &name);
                    bag.CountEntries();
                }),
                ElementsAre("Failed to get the task name , exception 2", "Failed to iterate the task bag , exception 2",
                            "Failed to get the value for setting name Name, exception 2"));
}

// A visitor's exception gives no code of the agent's, unless it is the agent exception.
TEST_F(TaskText, OfVisitorsThatThrow) {
    SettingVisitor visitor;
    visitor.onSetting = [] { throw 42; };
    EXPECT_THAT(TextsInside([&](ITaskBag& bag) { EXPECT_EQ(bag.IterateSettings(&visitor, L"Scan"), 0); }), IsEmpty());
    visitor.onSetting = [] { throw exception(77); };
    EXPECT_THAT(TextsInside([&](ITaskBag& bag) { EXPECT_EQ(bag.IterateSettings(&visitor, L"Scan"), 0); }),
                ElementsAre("Failed to iterate the task bag , exception 77"));
}

}  // namespace
