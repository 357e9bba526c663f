#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ModuleRequest.h"

// Puts the tasks of the JSON text in the place of those that the agent has.
inline void SetTasks(const std::string& json) {
    EXPECT_EQ(ny_sim_tasks_from_json(json.c_str()), NY_OK) << json;
}

// The agent has a task's product do something with the task.
class TaskRequest : public ModuleRequest<ny_sim_task_request_t, &ny_sim_task_request_release, &ny_sim_task_request_wait,
                                         &ny_sim_task_request_thread> {
public:
    explicit TaskRequest(const std::string& taskId, ny_sim_task_operation operation = NY_SIM_TASK_EXECUTE)
        : ModuleRequest([&](auto** made) { return ny_sim_request_task(taskId.c_str(), operation, made); }) {}
};

inline int32_t AnswerOf(const std::string& taskId, ny_sim_task_operation operation = NY_SIM_TASK_EXECUTE) {
    return TaskRequest(taskId, operation).Answer();
}

// The reports about tasks since the last call, in order, each as "<task id> <status>". One that comes meanwhile may be
// lost.
inline std::vector<std::string> TakeReports() {
    std::vector<std::string> reports;
    ny_sim_task_report_t report{};
    for (size_t i = 0; ny_sim_get_task_report(i, &report) == NY_OK; ++i) {
        reports.push_back(std::string(report.taskId) + " " + std::to_string(report.status));
    }
    ny_sim_clear_task_reports();
    return reports;
}
