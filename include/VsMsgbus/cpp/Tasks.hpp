/// @file
/// Scheduled tasks: running them, stopping them, reporting how they end. Needs the standard library's <stop_token>.
#pragma once

#include <version>

#if defined(__cpp_lib_jthread)

#include <functional>
#include <stop_token>
#include <string>
#include <utility>

#include "VsMsgbus/TaskEnforcer.h"
#include "VsMsgbus/cpp/TaskSettings.hpp"

namespace vsmsgbus {

enum class TaskResult : int32_t {
    Failed = VsKitMsgbus::INYTaskEnforcer::Failed,
    Done = VsKitMsgbus::INYTaskEnforcer::Succeeded,
};

/// One execution of a task. Any thread.
class TaskRun {
public:
    TaskRun(std::wstring taskId, std::stop_token token) : id(std::move(taskId)), stopToken(std::move(token)) {}

    const std::wstring& Id() const noexcept { return id; }
    /// Triggered when the agent stops the task, and when the product leaves: end soon then.
    const std::stop_token& StopToken() const noexcept { return stopToken; }
    bool IsToStop() const noexcept { return stopToken.stop_requested(); }
    /// Tells the agent that the task is getting on: the status VsKitMsgbus::INYTaskEnforcer::AgentDefined. There is no
    /// number that goes with it.
    void Progress() const noexcept { UpdateMsgbusTaskStatus(id.c_str(), VsKitMsgbus::INYTaskEnforcer::AgentDefined); }

private:
    const std::wstring id;
    const std::stop_token stopToken;
};

/// A task that the agent wants to be executed: the run and the settings, which are valid while the handler runs.
class Task : public TaskRun, public TaskSettings {
public:
    Task(const wchar_t* taskId, std::stop_token token, Bag& taskBag)
        : TaskRun(taskId, std::move(token)), TaskSettings(taskBag) {}
};

/// What a task does on a thread of its own.
using TaskWork = std::function<TaskResult(const TaskRun& run)>;

/// What a handler answers: how the task ended, or the work that the layer is to run on a thread of its own.
class TaskOutcome {
public:
    TaskOutcome(TaskResult taskResult) : result(taskResult) {}
    /// See OnOwnThread.
    explicit TaskOutcome(TaskWork workToDo) : work(std::move(workToDo)) {}

    const TaskWork& Work() const noexcept { return work; }
    TaskResult Result() const noexcept { return result; }

private:
    TaskResult result = TaskResult::Failed;
    TaskWork work;
};

/// Has the layer run the work on a thread of its own, so that the agent's thread is free at once: read the settings
/// before. The layer reports to the agent how the work ended, one second after its begin at the earliest, because the
/// agent is told meanwhile that the task goes on; work that throws has failed.
inline TaskOutcome OnOwnThread(TaskWork work) {
    return TaskOutcome(std::move(work));
}

/// Executes a task. Several may run at once, one and the same task among them.
using TasksHandler = std::function<TaskOutcome(Task& task)>;

}  // namespace vsmsgbus

#endif
