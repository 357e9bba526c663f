// The accessors of a task object.
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/scheduler/LentTasks.h"

using namespace simulator;

namespace {

// Fails or gives null where the task says so for this accessor. False when it gave null, and the accessor is done.
template <class Out>
bool Behave(const LentTask& lent, Accessor accessor, Out* out) {
    Require(out != nullptr);
    const AccessorBehaviour& behaviour = lent.task->BehaviourOf(accessor);
    if (behaviour.code != NY_OK) {
        throw Failure{behaviour.code};
    }
    if (behaviour.givesNull) {
        *out = nullptr;
    }
    return !behaviour.givesNull;
}

ValuePointer Find(const ValuePointer& table, const char* key) {
    Require(key != nullptr);
    ValuePointer value = FindInTable(*TableOf(*table), key);
    Require(value != nullptr);
    return value;
}

void HandOut(const ValuePointer& value, ny_variant_t** out) {
    *out = Handles().Own<ny_variant_t>(value);
}

}  // namespace

int32_t ny_core_task_get_id(ny_task_t* task, const char** id) {
    return Simulate("ny_task.get_id", [&] {
        const auto lent = TheLentTasks().Get(task);
        if (Behave(*lent, Accessor::GetId, id)) {
            *id = lent->id.c_str();
        }
    });
}

int32_t ny_core_task_get_name(ny_task_t* task, const char** name) {
    return Simulate("ny_task.get_name", [&] {
        const auto lent = TheLentTasks().Get(task);
        if (Behave(*lent, Accessor::GetName, name)) {
            *name = lent->task->name ? lent->name.c_str() : nullptr;
        }
    });
}

int32_t ny_core_task_get_setting(ny_task_t* task, const char* section, const char* name, ny_variant_t** out) {
    return Simulate("ny_task.get_setting", [&] {
        const auto lent = TheLentTasks().Get(task);
        if (Behave(*lent, Accessor::GetSetting, out)) {
            HandOut(Find(Find(lent->task->settings, section), name), out);
        }
    });
}

int32_t ny_core_task_get_section(ny_task_t* task, const char* section, ny_variant_t** out) {
    return Simulate("ny_task.get_section", [&] {
        const auto lent = TheLentTasks().Get(task);
        if (Behave(*lent, Accessor::GetSection, out)) {
            HandOut(Find(lent->task->settings, section), out);
        }
    });
}

int32_t ny_core_task_get_settings(ny_task_t* task, ny_variant_t** out) {
    return Simulate("ny_task.get_settings", [&] {
        const auto lent = TheLentTasks().Get(task);
        if (Behave(*lent, Accessor::GetSettings, out)) {
            HandOut(lent->task->settings, out);
        }
    });
}
