#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "AgentInstaller.h"
#include "RegistryRedirect.h"
#include "ny_simulator.h"
#include "support/LineLog.h"

// A machine of the test's own, without an agent at first: HKEY_LOCAL_MACHINE is redirected, and the agent's libraries
// are installed into a folder of this process.
class AgentEnvironment {
public:
    AgentEnvironment();
    // Removes what is installed.
    ~AgentEnvironment();
    AgentEnvironment(const AgentEnvironment&) = delete;
    AgentEnvironment& operator=(const AgentEnvironment&) = delete;

    // The builds are those of the simulated agent: full, older, lacking, empty, text.
    void InstallAgent(const std::string& version = "5.7.0", const std::string& build = "full");
    void UpgradeAgent(const std::string& version, const std::string& build = "full");
    void RemoveAgent();

    // For agents that are half there.
    simulator::AgentInstaller& Installer() { return installer; }
    // The key below HKEY_CURRENT_USER that is its HKEY_LOCAL_MACHINE.
    const std::string& LocalMachine() const { return redirect.Path(); }

private:
    simulator::RegistryRedirect redirect;
    simulator::AgentInstaller installer;
};

// A test with such a machine. It ends with no agent handle alive, no client started and no handle misused.
class AgentTest : public testing::Test {
protected:
    void TearDown() override;

    AgentEnvironment environment;
};

// Waits for a condition that is not announced: neither does the system tell that a library was unloaded, nor the agent
// that a handle was given back or that a registration has ended. Whether it came.
bool WaitUntil(const std::function<bool()>& isMet);

// Waits until the bridge has let go of the agent: no client and no handle is left, and its libraries are unloaded.
// After an Exit inside a callback that comes a moment after the callback has returned, on a thread of the bridge's own.
bool AgentIsLetGo();

// Waits until `count` calls of the agent's function have returned since the last ny_sim_reset or ny_sim_clear_calls.
bool WaitForAgentCalls(const char* function, size_t count = 1);
