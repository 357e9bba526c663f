#pragma once

#include "VsMsgbus.h"
#include "registration/Visits.h"
#include "support/AgentTasks.h"
#include "support/TaskEnforcer.h"

// Tasks, as the tests of this room use them; PropertyService.h says what the names mean. Each product has one task.
struct TaskService {
    static constexpr uint32_t mask = VsMsgbusServiceTask;
    static constexpr int kind = 2048;
    static constexpr char registering[] = "ny_scheduler_register_task_callbacks";
    static constexpr char unregistering[] = "ny_scheduler_unregister_task_callbacks";
    static constexpr auto Set = &VsKitMsgbusSetTaskEnforcer;
    static constexpr auto Remove = &VsKitMsgbusRemoveTaskEnforcer;

    struct Module {
        std::function<void()> act;
        bool lentWorks = true;
        TaskEnforcer object;

        Module() {
            object.execute = object.stop = object.remove = object.updateStatus = [this](ITaskBag& bag) {
                if (act) {
                    act();
                }
                EXPECT_EQ(bag.CountEntries(), lentWorks ? 1U : 0U);
                return 4;
            };
        }
    };

    static std::string TaskOf(const std::string& productId) { return "task of " + productId; }
    struct Request : TaskRequest {
        explicit Request(const std::string& productId) : TaskRequest(TaskOf(productId)) {}
    };

    static constexpr char called[] = "answer 0, status 4";
    static constexpr char notCalled[] = "answer 0, status 2";
    static constexpr char failed[] = "answer 3, status 3";
    // The product has left: no status is reported.
    static constexpr char left[] = "answer 0";
    static constexpr char leftAndFailed[] = "answer 3";
    static std::string OutcomeOf(const Request& request) { return Outcome(request.Answer()); }

    static constexpr char asked[] = "answer 0, status 4; answer 0; answer 0; answer 0, status 4; ";
    static constexpr char askedInVain[] = "answer 0, status 2; answer 0; answer 0; answer 0, status 3; ";
    static constexpr char askedAndFailed[] = "answer 3, status 3; answer 3; answer 3; answer 3, status 3; ";
    static std::string Ask(const std::string& productId) {
        std::string outcomes;
        ForEachRequest(productId, [&](const TaskRequest& request) { outcomes += Outcome(request.Answer()) + "; "; });
        return outcomes;
    }
    template <typename Check>
    static void ForEachRequest(const std::string& productId, const Check& check) {
        for (const auto operation :
             {NY_SIM_TASK_EXECUTE, NY_SIM_TASK_STOP, NY_SIM_TASK_REMOVE, NY_SIM_TASK_UPDATE_STATUS}) {
            check(TaskRequest(TaskOf(productId), operation));
        }
    }
    static std::vector<std::string> NotesOf(const std::string& productId) {
        const std::string task = TaskOf(productId);
        return {"execute " + task, "stop " + task, "remove " + task, "update " + task};
    }

    static std::string FailedWith(int32_t /*code*/) { return askedAndFailed; }
    static std::vector<std::string> LinesInVain() { return {}; }
    static std::vector<std::string> LinesOfFailure(const std::string& /*productId*/, const std::string& /*reason*/) {
        return {};
    }

    static bool IsKnownToAgent(const char* productId) { return ny_sim_has_task_callbacks(productId, nullptr) != 0; }
    static void Prepare() {
        std::string tasks;
        for (const std::string productId : {"PRODUCT1000", "PRODUCT2000", "product1000", "\xC3\x9C-PRODUCT",
                                            "\xC3\x9C-%s", "\xE4\xBA\xA7\xE5\x93\x81", "\xF0\x9F\x98\x80", " ", ""}) {
            tasks += (tasks.empty() ? R"([{"id": ")" : R"(, {"id": ")") + TaskOf(productId) + R"(", "product": ")" +
                     productId + R"(", "settings": {"Scan": {"Depth": "12"}}})";
        }
        SetTasks(tasks + "]");
    }

private:
    static std::string Outcome(int32_t answer) {
        std::string outcome = "answer " + std::to_string(answer);
        for (const std::string& report : TakeReports()) {
            outcome += ", status" + report.substr(report.rfind(' '));
        }
        return outcome;
    }
};
