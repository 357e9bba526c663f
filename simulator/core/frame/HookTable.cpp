#include "simulator/core/frame/HookTable.h"

namespace simulator {

void HookTable::Set(std::string_view function, ny_sim_hook_t hook, void* userData) {
    const std::lock_guard lock(mutex);
    if (hook != nullptr) {
        hooks.insert_or_assign(std::string(function), Hook{hook, userData});
    } else if (const auto entry = hooks.find(function); entry != hooks.end()) {
        hooks.erase(entry);
    }
}

void HookTable::Run(const char* function) {
    Hook hook;
    {
        const std::lock_guard lock(mutex);
        if (const auto entry = hooks.find(std::string_view(function)); entry != hooks.end()) {
            hook = entry->second;
        }
    }
    if (hook.call != nullptr) {
        hook.call(function, hook.userData);
    }
}

void HookTable::Clear() {
    const std::lock_guard lock(mutex);
    hooks.clear();
}

}  // namespace simulator
