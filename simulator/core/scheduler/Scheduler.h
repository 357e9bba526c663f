// The agent's scheduler: its tasks, and the reports that products made about them.
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
    // Nothing when there is no such report. The report's taskId stays valid until ClearReports.
    std::optional<ny_sim_task_report_t> ReportAt(size_t index) const;
    std::optional<ny_sim_task_report_t> LastReportOf(std::string_view taskId) const;
    bool WaitForReports(size_t count, std::chrono::milliseconds time) const;
    void ClearReports();

private:
    struct Report {
        std::string taskId;
        ny_sim_task_report_t report;
    };

    // The report for a caller of the control functions, with its taskId.
    static ny_sim_task_report_t ForCaller(const Report& report);

    mutable std::mutex mutex;
    mutable std::condition_variable reported;
    std::vector<TaskPointer> tasks;
    std::deque<Report> reports;
};

// The one scheduler of this process; lives as TheFrame does.
Scheduler& TheScheduler();

}  // namespace simulator
