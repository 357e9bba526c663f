#include "simulator/core/scheduler/Scheduler.h"

#include <windows.h>

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

Scheduler& theScheduler = *new Scheduler;

uint64_t Now() {
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count());
}

}  // namespace

void Scheduler::SetTasks(std::vector<TaskPointer> newTasks) {
    const std::lock_guard lock(mutex);
    tasks.swap(newTasks);
}

TaskPointer Scheduler::Find(std::string_view id) const {
    const std::lock_guard lock(mutex);
    const auto found =
        std::find_if(tasks.begin(), tasks.end(), [id](const TaskPointer& task) { return task->id == id; });
    return found == tasks.end() ? nullptr : *found;
}

void Scheduler::AddReport(const char* taskId, int32_t status) {
    Report added{taskId, {nullptr, status, GetCurrentThreadId(), Now()}};
    const std::lock_guard lock(mutex);
    reports.push_back(std::move(added));
    reported.notify_all();
}

size_t Scheduler::ReportCount() const {
    const std::lock_guard lock(mutex);
    return reports.size();
}

std::optional<ny_sim_task_report_t> Scheduler::ReportAt(size_t index) const {
    const std::lock_guard lock(mutex);
    return index < reports.size() ? std::optional(ForCaller(reports[index])) : std::nullopt;
}

std::optional<ny_sim_task_report_t> Scheduler::LastReportOf(std::string_view taskId) const {
    const std::lock_guard lock(mutex);
    const auto found = std::find_if(reports.rbegin(), reports.rend(),
                                    [taskId](const Report& report) { return report.taskId == taskId; });
    return found == reports.rend() ? std::nullopt : std::optional(ForCaller(*found));
}

bool Scheduler::WaitForReports(size_t count, std::chrono::milliseconds time) const {
    std::unique_lock lock(mutex);
    return reported.wait_for(lock, time, [this, count] { return reports.size() >= count; });
}

void Scheduler::ClearReports() {
    const std::lock_guard lock(mutex);
    reports.clear();
}

ny_sim_task_report_t Scheduler::ForCaller(const Report& report) {
    ny_sim_task_report_t shown = report.report;
    shown.taskId = report.taskId.c_str();
    return shown;
}

Scheduler& TheScheduler() {
    return theScheduler;
}

}  // namespace simulator
