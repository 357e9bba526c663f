#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <string>

#include "Registry.h"
#include "support/AgentCalls.h"
#include "support/AgentEnvironment.h"
#include "support/AgentRequest.h"
#include "support/CapturingSink.h"
#include "support/Collector.h"
#include "support/Event.h"
#include "support/Product.h"

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

// A test of a module with one property and a log sink. When it ends, no library of the agent is left loaded.
class BridgeTest : public AgentTest {
protected:
    void TearDown() override {
        AgentIsLetGo();
        AgentTest::TearDown();
        for (const char* library : {"ny_client.dll", "ny_variant.dll", "ny_msgbus.dll", "ny_logger.dll"}) {
            EXPECT_EQ(::GetModuleHandleA(library), nullptr) << library;
        }
    }

    // What Ask gives for a product that this collector is registered for.
    const std::vector<std::string> answered = {"answer 0", "general:version=1.0"};
    const std::vector<std::string> notAsked = {"answer " + std::to_string(NY_SIM_NOT_REGISTERED)};

    // Returns when the watcher has restarted the client and attached `products` products.
    void UpgradeAndWait(const std::string& version, const std::string& build = "full", size_t products = 1) {
        ny_sim_clear_calls();
        environment.UpgradeAgent(version, build);
        ASSERT_TRUE(WatcherCalls("ny_property_register_provider_callback", products));
    }

    CapturingSink sink;
    Collector collector{[](VsKitMsgbus::INYCollectProperties::ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    }};
};
