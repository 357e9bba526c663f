// The record of calls of agent functions, and the faults, hooks and checks that tests set for them.
#pragma once

#include "simulator/core/frame/CallRecord.h"
#include "simulator/core/frame/FaultTable.h"
#include "simulator/core/frame/HookTable.h"
#include "simulator/core/frame/LockCheck.h"
#include "simulator/core/frame/MisuseLog.h"

namespace simulator {

// Each part has a lock of its own. No thread holds two of these locks at a time.
struct Frame {
    CallRecord calls;
    FaultTable faults;
    HookTable hooks;
    MisuseLog misuse;
    LockCheck lockCheck;
};

// The one frame of this process. It lives as every state of the agent does: made when the library is loaded and not on
// first use, because the sanitizer of data races does not see how the static C++ runtime orders first uses; never
// destroyed, because a process may end while agent threads are still in callbacks.
Frame& TheFrame();

}  // namespace simulator
