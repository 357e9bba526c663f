/// @file
/// How tasks end.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "ny_simulator.h"
#include "vsmsgbus_testing/Failure.hpp"

namespace vsmsgbus::testing {

/// How a task ended, as the product reported it to the agent.
enum class TaskEnd : int32_t {
    Failed = 3,  ///< the task has failed
    Done = 4,    ///< the task is done
};

namespace detail {

inline std::string DescribeStatus(int32_t status) {
    constexpr int32_t goesOn = 2;
    constexpr int32_t progress = 6;
    const std::string number = std::to_string(status);
    switch (status) {
        case goesOn: return number + " (goes on)";
        case static_cast<int32_t>(TaskEnd::Failed): return number + " (failed)";
        case static_cast<int32_t>(TaskEnd::Done): return number + " (done)";
        case progress: return number + " (progress)";
        default: return number;
    }
}

/// The reports about a task that came after the first `before` of all reports.
class TaskReports {
public:
    TaskReports(std::string taskId, size_t before) : id(std::move(taskId)), first(before) {}

    /// Whether one says that it has ended, and how.
    std::optional<TaskEnd> End() const {
        std::optional<TaskEnd> end;
        ForEach([&](int32_t status) {
            if (status == static_cast<int32_t>(TaskEnd::Failed) || status == static_cast<int32_t>(TaskEnd::Done)) {
                end = static_cast<TaskEnd>(status);
            }
        });
        return end;
    }

    /// Waits for the end.
    std::optional<TaskEnd> WaitForEnd(std::chrono::milliseconds limit) const {
        const auto latest = std::chrono::steady_clock::now() + limit;
        for (;;) {
            // Before the look: a report that comes after it is one more.
            const size_t count = ny_sim_task_report_count();
            if (const auto end = End()) {
                return end;
            }
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(latest - std::chrono::steady_clock::now());
            if (left.count() <= 0 ||
                ny_sim_wait_task_reports(count + 1, static_cast<uint32_t>(left.count())) != NY_OK) {
                return End();
            }
        }
    }

    /// "it was reported 2 (goes on), 6 (progress)"
    std::string Describe() const {
        std::string statuses;
        ForEach([&](int32_t status) { AppendTo(statuses, DescribeStatus(status)); });
        return statuses.empty() ? "nothing was reported of it" : "it was reported " + statuses;
    }

private:
    template <class Visitor>
    void ForEach(const Visitor& visitor) const {
        ny_sim_task_report_t report{};
        for (size_t i = first; ny_sim_get_task_report(i, &report) == NY_OK; ++i) {
            if (id == report.taskId) {
                visitor(report.status);
            }
        }
    }

    std::string id;
    size_t first;
};

}  // namespace detail

}  // namespace vsmsgbus::testing
