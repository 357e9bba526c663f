// Control functions: faults, hooks, the call record and misuse.
#include "ny_simulator.h"
#include "simulator/core/frame/Frame.h"
#include "simulator/core/frame/FunctionName.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/threads/AgentThread.h"

using namespace simulator;

namespace {

// Refuses a name that no function has: a test that misspells one must not believe that its fault or hook is set.
void RequireSimulated(const char* function) {
    Require(function != nullptr);
    if (!IsSimulated(function)) {
        throw Failure{NY_SIM_NOT_SIMULATED};
    }
}

}  // namespace

int32_t ny_sim_fail_call(const char* function, uint32_t nth, int32_t code, ny_sim_fault_mode mode) {
    return Guarded("ny_sim_fail_call", [&] {
        RequireSimulated(function);
        Require(nth != 0 && (mode == NY_SIM_ONCE || mode == NY_SIM_FROM_THEN_ON));
        TheFrame().faults.Set(function, nth, code, mode);
    });
}

void ny_sim_clear_faults(void) {
    TheFrame().faults.Clear();
}

size_t ny_sim_fault_count(const char* function) {
    return function != nullptr ? TheFrame().faults.CountTaken(function) : 0;
}

int32_t ny_sim_set_hook(const char* function, ny_sim_hook_t hook, void* userData) {
    return Guarded("ny_sim_set_hook", [&] {
        RequireSimulated(function);
        TheFrame().hooks.Set(function, hook, userData);
    });
}

size_t ny_sim_call_count(const char* function) {
    return TheFrame().calls.Count(function);
}

int32_t ny_sim_get_call(size_t index, ny_sim_call_t* out) {
    return Guarded("ny_sim_get_call", [&] {
        const auto call = TheFrame().calls.At(index);
        Require(call && out != nullptr);
        *out = *call;
    });
}

void ny_sim_clear_calls(void) {
    TheFrame().calls.Clear();
}

int32_t ny_sim_wait_calls(const char* function, size_t count, uint32_t milliseconds) {
    return Guarded("ny_sim_wait_calls", [&] {
        if (!TheFrame().calls.WaitForEnded(function, count, std::chrono::milliseconds(milliseconds))) {
            throw Failure{NY_SIM_TIMEOUT};
        }
    });
}

int32_t ny_sim_wait_idle(uint32_t milliseconds) {
    return Guarded("ny_sim_wait_idle", [&] {
        if (!WaitForAgentThreads(std::chrono::milliseconds(milliseconds))) {
            throw Failure{NY_SIM_TIMEOUT};
        }
    });
}

size_t ny_sim_misuse_count(void) {
    return TheFrame().misuse.Count();
}

const char* ny_sim_last_misuse(void) {
    return TheFrame().misuse.Last();
}

void ny_sim_set_held_locks(ny_sim_held_locks_t heldLocks) {
    TheFrame().lockCheck.Set(heldLocks);
}
