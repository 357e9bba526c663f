#pragma once

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "Registry.h"
#include "support/AgentEnvironment.h"

// The folder that the agent's libraries are loaded from, as the installer names it; empty when they are not loaded.
inline std::string LoadedAgentFolder() {
    char path[MAX_PATH] = {};
    const HMODULE library = ::GetModuleHandleA("ny_client.dll");
    if (library == nullptr || ::GetModuleFileNameA(library, path, MAX_PATH) == 0) {
        return {};
    }
    return std::filesystem::path(path).parent_path().filename().string();
}

// Waits for what the watcher does after a change of the agent's key. A change made before its thread watches the key is
// seen only after 15 seconds, or with the next change: so the key is touched again and again. `happened` waits for what
// is expected, at most the time given.
inline bool SeenByWatcher(const std::function<bool(std::chrono::milliseconds limit)>& happened) {
    constexpr std::chrono::milliseconds patience{100};
    for (int i = 0; i < soon / patience; ++i) {
        if (happened(patience)) {
            return true;
        }
        simulator::RegistryKey(HKEY_LOCAL_MACHINE, "Software\\Corvane\\Agent", KEY_SET_VALUE | KEY_WOW64_64KEY)
            .WriteText("Touched", std::to_string(i));
    }
    return false;
}

// SeenByWatcher for agent calls, counted since the last ny_sim_reset or ny_sim_clear_calls.
inline bool WatcherCalls(const char* function, size_t count = 1) {
    return SeenByWatcher([=](std::chrono::milliseconds limit) {
        return ny_sim_wait_calls(function, count, static_cast<uint32_t>(limit.count())) == NY_OK;
    });
}
