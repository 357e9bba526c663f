// The agent has tasks run, and one of them stopped half way.
#include <fmt/format.h>

#include <string>

#include "Chapters.h"
#include "FileBesideProgram.h"
#include "ny_simulator.h"

namespace {

constexpr char quickTask[] = "scan-programs";
constexpr char gentleTask[] = "scan-gently";
constexpr uint32_t scanTime = 60000;

// A request of the agent's, answered when it ends.
class Request {
public:
    Request(Narrator& narrator, const char* taskId, ny_sim_task_operation operation, const char* whatTheAgentDoes) {
        narrator.Say("agent", fmt::format("{} {}", whatTheAgentDoes, taskId));
        Demand(ny_sim_request_task(taskId, operation, &request) == NY_OK, "the product is not registered for tasks");
    }
    ~Request() { ny_sim_task_request_release(request); }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    void WaitForSuccess() const {
        int32_t answer = NY_UNEXPECTED;
        Demand(ny_sim_task_request_wait(request, scanTime, &answer) == NY_OK, "the product did not answer");
        Demand(answer == NY_OK, "the bridge answered an error");
    }

private:
    ny_sim_task_request_t* request = nullptr;
};

// Tells the reports since the last call. The last one must be `last`.
void SayReports(Narrator& narrator, int32_t last) {
    std::string statuses;
    ny_sim_task_report_t report{};
    for (size_t index = 0; ny_sim_get_task_report(index, &report) == NY_OK; ++index) {
        statuses += fmt::format("{}{}", index == 0 ? "" : ", ", report.status);
    }
    narrator.Say("agent", fmt::format("was told how {} stands: {}", report.taskId, statuses));
    Demand(report.status == last, "the last status is another one");
    ny_sim_clear_task_reports();
}

void RunQuickTask(Narrator& narrator) {
    Request(narrator, quickTask, NY_SIM_TASK_EXECUTE, "has the product execute").WaitForSuccess();
    SayReports(narrator, 4);
    Request(narrator, quickTask, NY_SIM_TASK_UPDATE_STATUS, "asks how it stands with").WaitForSuccess();
    SayReports(narrator, 4);
}

void StopGentleTask(Narrator& narrator) {
    const Request execution(narrator, gentleTask, NY_SIM_TASK_EXECUTE, "has the product execute");
    Demand(ny_sim_wait_task_reports(1, scanTime) == NY_OK, "the product reports no progress");
    Request(narrator, gentleTask, NY_SIM_TASK_STOP, "is told of progress, and has the product stop").WaitForSuccess();
    execution.WaitForSuccess();
    SayReports(narrator, 3);
    Request(narrator, gentleTask, NY_SIM_TASK_REMOVE, "has the product remove").WaitForSuccess();
}

}  // namespace

void TellOfTasks(Stage& stage) {
    Demand(ny_sim_tasks_from_json(ReadFileBesideProgram("tasks.json").c_str()) == NY_OK, "these are no tasks");
    RunQuickTask(stage.narrator);
    StopGentleTask(stage.narrator);
    stage.calls.Tell();
    Demand(ny_sim_lent_tasks() == 0, "a task is still lent");
    stage.summary.Add("tasks", "a scan that reports its progress, and one that is stopped half way");
}
