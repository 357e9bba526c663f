#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "dispatcher/EntryPoint.h"
#include "support/AgentCalls.h"
#include "support/AgentEnvironment.h"
#include "support/Event.h"

using Lines = std::vector<std::string>;

// The four libraries of an agent that is installed, loaded as the bridge loads them.
class AgentLibraries {
public:
    explicit AgentLibraries(const std::filesystem::path& folder) {
        for (const char* name : {"ny_client.dll", "ny_variant.dll", "ny_msgbus.dll", "ny_logger.dll"}) {
            const HMODULE module =
                ::LoadLibraryExA((folder / name).string().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
            EXPECT_NE(module, nullptr) << name;
            modules.push_back(module);
        }
    }
    ~AgentLibraries() {
        for (const HMODULE module : modules) {
            ::FreeLibrary(module);
        }
    }
    AgentLibraries(const AgentLibraries&) = delete;
    AgentLibraries& operator=(const AgentLibraries&) = delete;

    // Null when no library exports it.
    FARPROC Find(const std::string& name) const {
        for (const HMODULE module : modules) {
            if (const FARPROC address = ::GetProcAddress(module, name.c_str())) {
                return address;
            }
        }
        return nullptr;
    }

private:
    std::vector<HMODULE> modules;
};

// A machine with a full agent, whose functions are called without the bridge: Call<&ny_variant_release>(variant).
class SimulatorTest : public AgentTest {
protected:
    void SetUp() override {
        environment.InstallAgent();
        libraries = std::make_unique<AgentLibraries>(environment.Installer().CurrentFolder());
    }

    template <auto function, class... Arguments>
    int32_t Call(Arguments... arguments) const {
        const FARPROC address = libraries->Find(std::string(entrypoint::NameOf<function>()));
        if (address == nullptr) {
            ADD_FAILURE() << "not exported: " << entrypoint::NameOf<function>();
            return -1;
        }
        return reinterpret_cast<decltype(function)>(reinterpret_cast<void*>(address))(arguments...);
    }

    // A variant made from JSON, released by the test.
    static ny_variant_t* FromJson(const char* json) {
        ny_variant_t* variant = nullptr;
        EXPECT_EQ(ny_sim_variant_from_json(json, &variant), NY_OK);
        return variant;
    }

    // A text variant's narrow text.
    std::string TextOf(ny_variant_t* variant) const {
        const char* text = nullptr;
        size_t length = 0;
        return Call<&ny_variant_get_string>(variant, &text, &length) == NY_OK ? std::string(text, length) : "(no text)";
    }

    std::unique_ptr<AgentLibraries> libraries;
};

// The same with a client of PRODUCT1000.
class SimulatedClientTest : public SimulatorTest {
protected:
    void SetUp() override {
        SimulatorTest::SetUp();
        ASSERT_EQ(Call<&ny_client_handler_create>("PRODUCT1000", &client), NY_OK);
    }

    void TearDown() override {
        ReleaseClient();
        SimulatorTest::TearDown();
    }

    void ReleaseClient() {
        if (client != nullptr) {
            EXPECT_EQ(Call<&ny_client_handler_release>(client), NY_OK);
            client = nullptr;
        }
    }

    // Unregisters on another thread while a callback is inside, which goes on when `mayLeave` is set: `function`, the
    // agent's, returns only then.
    static void ExpectToWaitForCallback(const char* function, const std::function<int32_t()>& unregister,
                                        Event& mayLeave) {
        Event begun;
        std::atomic<bool> isUnregistered = false;
        const AgentHook hook(function, [&] { begun.Set(); });
        std::thread unregistering([&] {
            EXPECT_EQ(unregister(), NY_OK);
            isUnregistered = true;
        });
        EXPECT_TRUE(begun.Wait());
        EXPECT_EQ(ny_sim_wait_calls(function, 1, 30), NY_SIM_TIMEOUT);
        EXPECT_FALSE(isUnregistered);
        mayLeave.Set();
        unregistering.join();
    }

    ny_client_t* client = nullptr;
};
