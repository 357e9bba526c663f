// The agent as the soak has it: installed and removed on a machine of its own, and calling products back.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "soak/Services.h"
#include "support/AgentEnvironment.h"

// Every id that products of the soak enter with.
std::vector<std::string> AllProductIds();

// Gives the agent policies, tasks and information for all of them.
void FillAgent();

// Whether the product is registered with the agent for that service.
bool IsAttached(const std::string& productId, Service service);

// The agent calls the product once, and its answer is waited for. `variant` chooses among the calls of the service.
// Whether there was a product to call. An answer that does not come is a failure of the test.
bool AgentCalls(const std::string& productId, Service service, uint32_t variant);

// The agent that comes and goes; each installation has a version of its own.
class AgentOfTheSoak {
public:
    AgentOfTheSoak();

    void Install(bool isOlderBuild);
    // Its users are told first. The files go with DeleteFiles.
    void Remove();
    // Call it once no thread uses the agent any more: a library that is needed and is gone keeps the agent's handles
    // from being released.
    void DeleteFiles();
    bool IsInstalled() const { return isInstalled; }
    // Of the last installation.
    std::string Version() const { return "5." + std::to_string(installations); }

    // Whether libraries of the agent's are in the process.
    static bool IsLoaded();
    // Changes something in the agent's key that means nothing: a watcher looks again.
    static void Touch();

private:
    AgentEnvironment environment;
    bool isInstalled = false;
    unsigned installations = 0;
};
