// The agent has tasks executed, stopped, removed, and asks about them.
#include <memory>

#include "tool/play/player/AgentRequest.h"
#include "tool/play/player/Steps.h"

namespace tool::play {

namespace {

using vsmsgbus::testing::Failure;
using vsmsgbus::testing::TaskEnd;
using vsmsgbus::testing::detail::TaskReports;
using Json = nlohmann::json;

void MakeRequest(Stage& stage, const Json& step, ny_sim_task_operation operation, const std::string& what) {
    const std::string task = step.at("task");
    ny_sim_task_request_t* request = nullptr;
    stage.Tell("agent", what + " the task " + task);
    const int32_t code = ny_sim_request_task(task.c_str(), operation, &request);
    if (code == NY_SIM_NOT_REGISTERED) {
        throw Failure("the task's product is not registered for tasks");
    }
    if (code != NY_OK) {
        throw Failure("the agent has no task " + task + ": see \"set tasks\"");
    }
    stage.Finish(step, std::make_unique<TaskRequest>(
                           request, [](Stage& on, const Json& of, ny_sim_task_request_t* made, int32_t answer) {
                               DemandAgentAnswer(on, of, ny_sim_task_request_thread(made), answer);
                           }));
}

void StartTask(Stage& stage, const Json& step) {
    stage.ReportsBefore()[step.at("task")] = ny_sim_task_report_count();
    MakeRequest(stage, step, NY_SIM_TASK_EXECUTE, "executes");
}

void StopTask(Stage& stage, const Json& step) {
    MakeRequest(stage, step, NY_SIM_TASK_STOP, "stops");
}

void RemoveTask(Stage& stage, const Json& step) {
    MakeRequest(stage, step, NY_SIM_TASK_REMOVE, "removes");
}

void AskTask(Stage& stage, const Json& step) {
    MakeRequest(stage, step, NY_SIM_TASK_UPDATE_STATUS, "asks about");
}

void WaitForTask(Stage& stage, const Json& step) {
    const std::string task = step.at("task");
    const auto before = stage.ReportsBefore().find(task);
    if (before == stage.ReportsBefore().end()) {
        throw Failure("the task " + task + " was not started");
    }
    const TaskReports reports(task, before->second);
    const auto end = reports.WaitForEnd(LimitOf(step));
    if (!end) {
        throw Hung("waited " + std::to_string(LimitOf(step).count()) + " ms until the task " + task +
                   " has ended: " + reports.Describe());
    }
    stage.Tell("agent", "was told of " + task + ": " + reports.Describe());
    const std::string wanted = step.value("end", "done");
    const std::string how = *end == TaskEnd::Done ? "done" : "failed";
    if (wanted != "any" && wanted != how) {
        throw Failure("the task " + task + " was to end as " + wanted + ", and has ended as " + how);
    }
}

void RunTask(Stage& stage, const Json& step) {
    const auto latest = std::chrono::steady_clock::now() + LimitOf(step);
    StartTask(stage, step);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(latest - std::chrono::steady_clock::now());
    Json wait = step;
    wait["within"] = std::max<int64_t>(left.count(), 0);
    WaitForTask(stage, wait);
}

}  // namespace

StepTable TaskSteps() {
    return {{"start task", &StartTask}, {"stop task", &StopTask},        {"remove task", &RemoveTask},
            {"ask task", &AskTask},     {"wait for task", &WaitForTask}, {"run task", &RunTask}};
}

}  // namespace tool::play
