#pragma once

#include "VsMsgbus/TaskEnforcer.h"
#include "msgbus/RegistrationTable.h"

// A module's registered enforcer.
struct EnforcerRecord {
    EnforcerRecord(void* moduleContext, VsKitMsgbus::INYTaskEnforcer* moduleEnforcer) noexcept
        : context(moduleContext), enforcer(moduleEnforcer) {}

    void* const context;
    VsKitMsgbus::INYTaskEnforcer* const enforcer;
};

// Calls of one enforcer run side by side, because a task is stopped while it is executed.
using EnforcerRegistrations =
    RegistrationTable<EnforcerRecord, CallGate::Admission::Together, DuplicateRecord::LeftAlive>;

// The enforcers of all modules of the process, by product id.
EnforcerRegistrations& EnforcerTable();
