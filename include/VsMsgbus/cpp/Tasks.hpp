/// @file
/// Scheduled tasks: running them, stopping them, reporting how they end. Needs the standard library's stop tokens:
/// there only where `__cpp_lib_jthread` is defined.
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

/// How a task ended.
enum class TaskResult : int32_t {
    Failed = VsKitMsgbus::INYTaskEnforcer::Failed,   ///< the task has failed
    Done = VsKitMsgbus::INYTaskEnforcer::Succeeded,  ///< the task is done
};

/// One execution of a task. Any thread.
class TaskRun {
public:
    /// For the layer alone.
    TaskRun(std::wstring taskId, std::stop_token token) : id(std::move(taskId)), stopToken(std::move(token)) {}

    /// The task's id.
    const std::wstring& Id() const noexcept { return id; }
    /// Triggered when the agent stops the task, and when the product leaves: end soon then. Ask it now and then, rather
    /// than wait with a std::stop_callback or a std::condition_variable_any: with g++ 12 for Windows the destructor of
    /// a std::stop_callback that runs on another thread at that moment may never return.
    const std::stop_token& StopToken() const noexcept { return stopToken; }
    /// Whether the token was triggered.
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
    /// For the layer alone.
    Task(const wchar_t* taskId, std::stop_token token, Bag& taskBag)
        : TaskRun(taskId, std::move(token)), TaskSettings(taskBag) {}
};

/// What a task does on a thread of its own.
using TaskWork = std::function<TaskResult(const TaskRun& run)>;

/// What a handler answers: how the task ended, or the work that the layer is to run on a thread of its own.
class TaskOutcome {
public:
    /// The task has ended, in the handler.
    TaskOutcome(TaskResult taskResult) : result(taskResult) {}
    /// See OnOwnThread.
    explicit TaskOutcome(TaskWork workToDo) : work(std::move(workToDo)) {}

    /// Empty when the task has ended.
    const TaskWork& Work() const noexcept { return work; }
    /// Failed when there is work.
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
