#include "simulator/core/scheduler/LentTasks.h"

#include <cstdio>

namespace simulator {

namespace {

LentTasks& theLentTasks = *new LentTasks;

}  // namespace

ny_task_t* LentTasks::Lend(const TaskPointer& task, const ny_task_methods_t& accessors) {
    auto loan = std::make_shared<LentTask>();
    loan->task = task;
    loan->id = task->id;
    loan->name = task->name.value_or("");
    loan->methods = accessors;
    const auto leaveOut = [&task](auto& method, Accessor accessor) {
        if (task->BehaviourOf(accessor).isAbsent) {
            method = nullptr;
        }
    };
    leaveOut(loan->methods.get_id, Accessor::GetId);
    leaveOut(loan->methods.get_name, Accessor::GetName);
    leaveOut(loan->methods.get_setting, Accessor::GetSetting);
    leaveOut(loan->methods.get_section, Accessor::GetSection);
    leaveOut(loan->methods.get_settings, Accessor::GetSettings);
    loan->object.methods = &loan->methods;
    ny_task_t* const object = &loan->object;
    const std::lock_guard lock(mutex);
    lent.emplace(object, std::move(loan));
    return object;
}

void LentTasks::EndLoan(ny_task_t* object) {
    const std::lock_guard lock(mutex);
    lent.erase(object);
}

std::shared_ptr<LentTask> LentTasks::Get(const ny_task_t* object) const {
    Require(object != nullptr);
    const std::lock_guard lock(mutex);
    const auto found = lent.find(object);
    if (found == lent.end()) {
        throw HandleMisuse{"the task object is not lent"};
    }
    return found->second;
}

size_t LentTasks::Count() const {
    const std::lock_guard lock(mutex);
    return lent.size();
}

LentTasks& TheLentTasks() {
    return theLentTasks;
}

}  // namespace simulator
