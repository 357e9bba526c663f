// The state of the simulated agent.
#pragma once

#include "CallRecord.h"
#include "ClientTable.h"
#include "FaultTable.h"
#include "HandleTable.h"
#include "HookTable.h"
#include "Hostility.h"
#include "Information.h"
#include "LentTasks.h"
#include "LockCheck.h"
#include "MisuseLog.h"
#include "PolicyStore.h"
#include "Scheduler.h"

namespace simulator {

// Each part guards itself; no two of their locks are ever held together.
struct Agent {
    CallRecord calls;
    FaultTable faults;
    HookTable hooks;
    MisuseLog misuse;
    LockCheck lockCheck;
    HandleTable handles;
    ClientTable clients;
    PolicyStore policies;
    Information information;
    Scheduler scheduler;
    LentTasks lentTasks;
    Hostility hostility;
};

// The one agent of this process.
Agent& TheAgent();

inline HandleTable& Handles() {
    return TheAgent().handles;
}

}  // namespace simulator
