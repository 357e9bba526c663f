// Every agent function that is called for a task answers an error, at its first call and at every later one. The calls
// are those of a run in which all goes well.
#include <algorithm>
#include <functional>
#include <string_view>

#include "scheduler/TaskTest.h"
#include "support/DroppedTexts.h"
#include "support/KeptHandles.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// What one execution calls. The module is called after the first `callsBeforeModule` of them.
constexpr const char* executionCalls[] = {
    // the product and the task as wide texts
    "ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string", "ny_wbuffer_get_string",
    "ny_wbuffer_release", "ny_variant_release", "ny_task.get_id", "ny_variant_create_from_string",
    "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string", "ny_wbuffer_get_string", "ny_wbuffer_release",
    "ny_variant_release",
    // the report
    "ny_task.get_id", "ny_scheduler_update_task_status"};
constexpr size_t callsBeforeModule = 13;

class TaskFault : public TaskTest {
protected:
    // Runs `run(function, isRelease)` for each call of the list and each code, with that call answering the code.
    static void ForEachFault(const std::vector<std::string>& calls,
                             const std::function<void(size_t call, int32_t code, bool isRelease)>& run) {
        for (size_t call = 0; call < calls.size(); ++call) {
            for (const int32_t code : {77, -5, 1, 705}) {
                SCOPED_TRACE(calls[call] + ", call " + std::to_string(call) + ", code " + std::to_string(code));
                const auto end = calls.begin() + static_cast<std::ptrdiff_t>(call) + 1;
                const auto nth = std::count(calls.begin(), end, calls[call]);
                ASSERT_EQ(ny_sim_fail_call(calls[call].c_str(), static_cast<uint32_t>(nth), code, NY_SIM_ONCE), NY_OK);
                run(call, code, calls[call].ends_with("_release"));
                ny_sim_clear_faults();
            }
        }
    }

    // Has the bag's operation done in a task, with every one of its calls failing in turn. `operation` says whether it
    // went well; a failure's text begins with `head`, an operation without a text has none.
    void FailEachCallOf(const std::function<bool(ITaskBag&)>& operation, const std::string& head) {
        size_t keptHandles = 0;
        KeptHandles kept;
        WithBag([&](ITaskBag& bag) {
            ny_sim_clear_calls();
            EXPECT_TRUE(operation(bag));
            const std::vector<std::string> calls = AgentCalls();
            EXPECT_GE(calls.size(), 4U);
            dropped.log.Take();
            ForEachFault(calls, [&](size_t, int32_t code, bool isRelease) {
                EXPECT_EQ(operation(bag), isRelease);
                keptHandles += isRelease ? 1 : 0;
                if (isRelease || head.empty()) {
                    EXPECT_THAT(dropped.log.Take(), IsEmpty());
                } else {
                    EXPECT_THAT(dropped.log.Take(), ElementsAre(head + ", exception " + std::to_string(code)));
                }
            });
            return 4;
        });
        product.Exit();
        EXPECT_EQ(kept.Release(), keptHandles);
        EXPECT_GT(keptHandles, 0U);
    }

    DroppedTexts dropped;
};

TEST_F(TaskFault, CallsOfAnExecutionAreThese) {
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

TEST_F(TaskFault, OfAnExecutionEndsItWhereItIs) {
    KeptHandles kept;
    size_t keptHandles = 0;
    const TaskEnforcerRegistration registration(productId, enforcer);
    const std::vector<std::string> calls(std::begin(executionCalls), std::end(executionCalls));
    ForEachFault(calls, [&](size_t call, int32_t code, bool isRelease) {
        dropped.log.Take();
        const bool isBeforeModule = call < callsBeforeModule && !isRelease;
        const bool isReport = calls[call] == "ny_scheduler_update_task_status";
        const bool isSecondRead = call == callsBeforeModule;
        EXPECT_EQ(AnswerOf("task"), isBeforeModule || isSecondRead ? NY_UNEXPECTED : NY_OK);
        EXPECT_EQ(enforcer.log.Take().size(), isBeforeModule ? 0U : 1U);
        EXPECT_EQ(TakeReports().size(), isRelease ? 1U : 0U);
        std::vector<std::string> texts;
        if (!isBeforeModule) {
            texts.push_back("Successfully executed the task task for product id PRODUCT1000");
        }
        if (isReport) {
            texts.push_back("Failed to update the task status, error  [" + std::to_string(code) + "]");
        }
        EXPECT_EQ(dropped.log.Take(), texts);
        keptHandles += isRelease ? 1 : 0;
        EXPECT_EQ(ny_sim_lent_tasks(), 0U);
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    product.Exit();
    EXPECT_EQ(kept.Release(), keptHandles);
}

TEST_F(TaskFault, OfAText) {
    FailEachCallOf(
        [](ITaskBag& bag) {
            VsKitMsgbus::lpc_buffer text;
            const bool isGiven = bag.GetText(L"Scan", L"Folder", &text);
            EXPECT_EQ(TakeText(text), isGiven ? "C:\\" : "(kind 0)");
            return isGiven;
        },
        "Failed to get the value for setting name Folder");
}

TEST_F(TaskFault, OfABoolean) {
    FailEachCallOf(
        [](ITaskBag& bag) {
            bool value = false;
            const bool isGiven = bag.GetBoolean(L"Scan", L"Deep", &value);
            EXPECT_EQ(value, isGiven);
            return isGiven;
        },
        "Failed to get the value for setting name Deep");
}

TEST_F(TaskFault, OfAnInteger) {
    FailEachCallOf(
        [](ITaskBag& bag) {
            int32_t value = 77;
            const bool isGiven = bag.GetInteger(L"Scan", L"Depth", &value);
            EXPECT_EQ(value, isGiven ? 12 : 0);
            return isGiven;
        },
        "Failed to get the value for setting name Depth");
}

TEST_F(TaskFault, OfTheName) {
    FailEachCallOf(
        [](ITaskBag& bag) {
            VsKitMsgbus::lpc_buffer text;
            const bool isGiven = bag.GetTaskName(&text);
            EXPECT_EQ(TakeText(text), isGiven ? "The task" : "(kind 0)");
            return isGiven;
        },
        "Failed to get the task name ");
}

TEST_F(TaskFault, OfAnIterationShowsWhatCameBefore) {
    FailEachCallOf(
        [](ITaskBag& bag) {
            SettingVisitor visitor;
            const int32_t result = bag.IterateSettings(&visitor, L"Scan");
            const std::vector<std::string> all = {"Scan:Folder=C:\\", "Scan:Depth=12", "Scan:Deep=TRUE"};
            std::vector<std::string> shown = visitor.log.Lines();
            EXPECT_EQ(shown.size() == all.size(), result == 1);
            EXPECT_TRUE(std::equal(shown.begin(), shown.end(), all.begin()));
            return result == 1;
        },
        "Failed to iterate the task bag ");
}

TEST_F(TaskFault, OfACount) {
    FailEachCallOf([](ITaskBag& bag) { return bag.CountEntries() == 2; }, "");
}

}  // namespace
