// The hooks that run at the start of calls.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "ny_simulator.h"

namespace simulator {

class HookTable {
public:
    // A null hook removes the function's hook.
    void Set(std::string_view function, ny_sim_hook_t hook, void* userData);
    // Runs the function's hook, if it has one, on the calling thread and with no lock held.
    void Run(const char* function);
    void Clear();

private:
    struct Hook {
        ny_sim_hook_t call = nullptr;
        void* userData = nullptr;
    };

    std::mutex mutex;
    std::map<std::string, Hook, std::less<>> hooks;
};

}  // namespace simulator
