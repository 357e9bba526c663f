// The task objects that callbacks see.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "ny_agent.h"
#include "simulator/core/frame/Failure.h"
#include "simulator/core/scheduler/Task.h"

namespace simulator {

// A task object is no handle but memory that products read. The end of its loan frees it and the texts that it lent.
struct LentTask {
    ny_task object = {};
    ny_task_methods_t methods = {};
    TaskPointer task;
    std::string id;
    std::string name;
};

class LentTasks {
public:
    // Makes an object for the task, with the given accessors but those that the task lacks.
    ny_task_t* Lend(const TaskPointer& task, const ny_task_methods_t& accessors);
    void EndLoan(ny_task_t* object);

    // Throws Failure for null, HandleMisuse for an object that is not lent.
    std::shared_ptr<LentTask> Get(const ny_task_t* object) const;
    size_t Count() const;

private:
    mutable std::mutex mutex;
    std::map<const ny_task_t*, std::shared_ptr<LentTask>> lent;
};

// While it lives, a task object is lent.
class TaskLoan {
public:
    TaskLoan(LentTasks& lender, const TaskPointer& task, const ny_task_methods_t& accessors)
        : tasks(lender), object(lender.Lend(task, accessors)) {}
    ~TaskLoan() { tasks.EndLoan(object); }
    TaskLoan(const TaskLoan&) = delete;
    TaskLoan& operator=(const TaskLoan&) = delete;

    ny_task_t* Object() const { return object; }

private:
    LentTasks& tasks;
    ny_task_t* const object;
};

// The one record of this process; lives as TheFrame does.
LentTasks& TheLentTasks();

}  // namespace simulator
