// The agent's scheduler: the tasks that there are, and what was reported about them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ny_simulator.h"
#include "simulator/core/scheduler/Task.h"

namespace simulator {

class Scheduler {
public:
    void SetTasks(std::vector<TaskPointer> newTasks);
    // Null when there is none of that id.
    TaskPointer Find(std::string_view id) const;

    // Notes the calling thread's report.
    void AddReport(const char* taskId, int32_t status);
    size_t ReportCount() const;
    std::optional<ny_sim_task_report_t> ReportAt(size_t index) const;
    std::optional<ny_sim_task_report_t> LastReportOf(std::string_view taskId) const;
    bool WaitForReports(size_t count, std::chrono::milliseconds time) const;
    void ClearReports();

private:
    struct Report {
        std::string taskId;
        ny_sim_task_report_t report;
    };

    static ny_sim_task_report_t Show(const Report& report);

    mutable std::mutex mutex;
    mutable std::condition_variable reported;
    std::vector<TaskPointer> tasks;
    std::deque<Report> reports;
};

// The one scheduler of this process; lives as TheFrame does.
Scheduler& TheScheduler();

}  // namespace simulator
