/// @file
/// The tasks of one product while they run. Used by Product.hpp alone.
#pragma once

#include "VsMsgbus/cpp/Tasks.hpp"

#if defined(__cpp_lib_jthread)

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "VsMsgbus/cpp/Log.hpp"

namespace vsmsgbus::detail {

/// Runs the product's tasks, on the agent's threads or on threads of their own, and knows how they ended. Held by a
/// std::shared_ptr: threads of their own keep it.
class TaskRunner : public std::enable_shared_from_this<TaskRunner> {
public:
    TaskRunner(TasksHandler tasksHandler, std::shared_ptr<Log> productLog)
        : handler(std::move(tasksHandler)), log(std::move(productLog)) {}
    TaskRunner(const TaskRunner&) = delete;
    TaskRunner& operator=(const TaskRunner&) = delete;

    /// The body of ExecuteTask.
    int32_t Execute(const wchar_t* taskId, VsKitMsgbus::INYTaskEnforcer::ITaskBag& bag) {
        JoinEnded();
        const RunPointer run = Begin(taskId);
        TaskOutcome outcome = TaskResult::Failed;
        bool isStarted = false;
        RunHandler(*log, "tasks", [&] {
            Task task(taskId, run->stop.get_token(), bag);
            outcome = handler(task);
            isStarted = outcome.Work() && Start(run, outcome.Work());
        });
        if (isStarted) {
            return VsKitMsgbus::INYTaskEnforcer::NothingDecided;
        }
        // Failed where there is work that was not started.
        End(run, outcome.Result());
        return static_cast<int32_t>(outcome.Result());
    }

    /// The body of UpdateTaskStatus.
    int32_t Status(const wchar_t* taskId) {
        const std::lock_guard guard(mutex);
        for (const RunPointer& run : runs) {
            if (run->id == taskId && !run->hasEnded) {
                return VsKitMsgbus::INYTaskEnforcer::NothingDecided;
            }
        }
        const auto found = lastResults.find(taskId);
        return static_cast<int32_t>(found != lastResults.end() ? found->second : TaskResult::Failed);
    }

    void Stop(std::wstring_view taskId) {
        StopThose([taskId](const Run& run) { return run.id == taskId; });
    }

    void Forget(const wchar_t* taskId) {
        const std::lock_guard guard(mutex);
        lastResults.erase(taskId);
    }

    /// For a product that leaves. Tasks that begin from now on are stopped at once, and get no thread of their own.
    void StopAll() {
        {
            const std::lock_guard guard(mutex);
            isLeaving = true;
        }
        StopThose([](const Run& /*run*/) { return true; });
    }

    /// Waits until all work has ended and is reported, until then at the latest. Not on the thread of such work.
    void WaitForWork(std::chrono::steady_clock::time_point latest) {
        std::unique_lock guard(mutex);
        if (!IsOnThreadOfARun()) {
            changed.wait_until(guard, latest, [this] { return HaveAllEnded(); });
        }
    }

    /// For a product that has left: nothing is reported any more. Waits in the same way, and then for the threads of
    /// the work that has ended. False when some goes on, or when the calling thread is one of them: its threads are
    /// then left to end by themselves.
    bool WaitForAll(std::chrono::steady_clock::time_point latest) {
        {
            const std::lock_guard guard(mutex);
            hasLeft = true;
            changed.notify_all();
        }
        WaitForWork(latest);
        JoinEnded();
        const std::lock_guard guard(mutex);
        const bool isAllOut = runs.empty();
        for (const RunPointer& run : runs) {
            if (run->thread.joinable()) {
                run->thread.detach();
            }
        }
        return isAllOut;
    }

private:
    struct Run {
        std::wstring id;
        std::stop_source stop;
        std::chrono::steady_clock::time_point begun;  // of the thread of its own
        std::thread::id runner;
        std::thread thread;  // of its own, if it has one
        bool hasEnded = false;
    };
    using RunPointer = std::shared_ptr<Run>;

    RunPointer Begin(const wchar_t* taskId) {
        auto run = std::make_shared<Run>();
        run->id = taskId;
        run->runner = std::this_thread::get_id();
        const std::lock_guard guard(mutex);
        lastResults.try_emplace(run->id, TaskResult::Failed);
        if (isLeaving) {
            run->stop.request_stop();
        }
        runs.push_back(run);
        return run;
    }

    // False while the product leaves: the agent would not hear the end. Throws std::system_error when the system has no
    // thread for it.
    bool Start(const RunPointer& run, const TaskWork& work) {
        const std::lock_guard guard(mutex);
        if (isLeaving) {
            return false;
        }
        run->begun = std::chrono::steady_clock::now();
        run->thread = std::thread([self = shared_from_this(), run, work] { self->Work(run, work); });
        run->runner = run->thread.get_id();
        return true;
    }

    void Work(const RunPointer& run, const TaskWork& work) {
        TaskResult result = TaskResult::Failed;
        RunHandler(*log, "tasks", [&] { result = work(TaskRun(run->id, run->stop.get_token())); });
        if (WaitForAnswer(*run)) {
            UpdateMsgbusTaskStatus(run->id.c_str(), static_cast<int>(result));
        }
        End(run, result);
    }

    // The bridge tells the agent that the task goes on once ExecuteTask has returned, and the agent must not hear that
    // last. No call says when it has been told. False when the product has left.
    bool WaitForAnswer(const Run& run) {
        constexpr std::chrono::seconds timeToAnswer{1};
        std::unique_lock guard(mutex);
        return !changed.wait_until(guard, run.begun + timeToAnswer, [this] { return hasLeft; });
    }

    void End(const RunPointer& run, TaskResult result) {
        const std::lock_guard guard(mutex);
        run->hasEnded = true;
        if (const auto last = lastResults.find(run->id); last != lastResults.end()) {
            last->second = result;
        }
        changed.notify_all();
    }

    // A stop may call code of the module's: no lock is held then.
    template <class Condition>
    void StopThose(const Condition& isMeant) {
        while (const RunPointer run = FindToStop(isMeant)) {
            run->stop.request_stop();
        }
    }

    template <class Condition>
    RunPointer FindToStop(const Condition& isMeant) {
        const std::lock_guard guard(mutex);
        const auto found = std::find_if(runs.begin(), runs.end(), [&](const RunPointer& run) {
            return isMeant(*run) && !run->stop.stop_requested();
        });
        return found != runs.end() ? *found : nullptr;
    }

    bool HaveAllEnded() const {
        return std::all_of(runs.begin(), runs.end(), [](const RunPointer& run) { return run->hasEnded; });
    }

    bool IsOnThreadOfARun() const {
        const auto isRunner = [](const RunPointer& run) {
            return !run->hasEnded && run->runner == std::this_thread::get_id();
        };
        return std::any_of(runs.begin(), runs.end(), isRunner);
    }

    // A thread whose work has ended is about to end itself.
    void JoinEnded() {
        std::list<RunPointer> over;
        {
            const std::lock_guard guard(mutex);
            for (auto run = runs.begin(); run != runs.end();) {
                const auto next = std::next(run);
                if ((*run)->hasEnded && (*run)->thread.get_id() != std::this_thread::get_id()) {
                    over.splice(over.end(), runs, run);
                }
                run = next;
            }
        }
        for (const RunPointer& run : over) {
            if (run->thread.joinable()) {
                run->thread.join();
            }
        }
    }

    const TasksHandler handler;
    const std::shared_ptr<Log> log;
    std::mutex mutex;
    std::condition_variable changed;
    bool isLeaving = false;
    bool hasLeft = false;
    std::list<RunPointer> runs;
    std::map<std::wstring, TaskResult, std::less<>> lastResults;
};

}  // namespace vsmsgbus::detail

#endif
