#pragma once

#include "VsMsgbus/TaskEnforcer.h"
#include "msgbus/registrations/RegistrationTable.h"
#include "values/ModuleInterface.h"

namespace bridge {

// A module's registered enforcer.
struct TaskEnforcerRecord {
    TaskEnforcerRecord(VsKitMsgbus::INYTaskEnforcer* moduleEnforcer, void* moduleContext) noexcept
        : context(moduleContext), enforcer(moduleEnforcer) {}

    void* const context;
    const ModuleInterface<VsKitMsgbus::INYTaskEnforcer> enforcer;
};

// Calls of one enforcer run side by side, because a task is stopped while it is executed.
inline auto& TaskEnforcerTable() {
    return TableOfProcess<
        RegistrationTable<TaskEnforcerRecord, CallGate::Admission::Together, DuplicateRecord::Leaked>>();
}

}  // namespace bridge
