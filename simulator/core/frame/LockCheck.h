// Finds callers of the agent that hold locks of their own.
#pragma once

#include <atomic>
#include <string>

#include "ny_simulator.h"
#include "simulator/core/frame/MisuseLog.h"

namespace simulator {

class LockCheck {
public:
    // `function` counts the calling thread's locks; null switches the check off.
    void Set(ny_sim_held_locks_t function) noexcept { heldLocks = function; }

    // Counts a misuse when the calling thread, which calls `function`, holds any.
    void Run(const char* function, MisuseLog& misuse) const {
        const ny_sim_held_locks_t ask = heldLocks;
        const size_t held = ask != nullptr ? ask() : 0;
        if (held != 0) {
            misuse.Add(function, "the calling thread holds " + std::to_string(held) + " of its locks");
        }
    }

private:
    std::atomic<ny_sim_held_locks_t> heldLocks = nullptr;
};

}  // namespace simulator
