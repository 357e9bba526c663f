// The machine, the module and the products of the re-entrancy tests.
#pragma once

#include <filesystem>
#include <functional>

#include "reentrancy/Module.h"
#include "support/AgentEnvironment.h"

class ReentrancyWorld {
public:
    static constexpr char product[] = "PRODUCT1000";
    static constexpr wchar_t wideProduct[] = L"PRODUCT1000";
    static constexpr char otherProduct[] = "PRODUCT2000";
    static constexpr wchar_t wideOtherProduct[] = L"PRODUCT2000";
    static constexpr uint32_t allServices =
        VsMsgbusServiceUpdate | VsMsgbusServiceTask | VsMsgbusServicePolicy | VsMsgbusServiceProperty;

    ReentrancyWorld();
    ~ReentrancyWorld();
    ReentrancyWorld(const ReentrancyWorld&) = delete;
    ReentrancyWorld& operator=(const ReentrancyWorld&) = delete;

    // Agents that the registry may name before or after Enter: a full one, another version of it, one that lacks
    // ny_variant.dll, and none.
    void PutAgent();
    void PutNewerAgent();
    void PutAgentWithoutValues();
    static void TakeAgentAway();

    // The agent's policies, tasks and information; afterwards the agent is not hostile any more.
    static void FillAgent();

    // Registers the module for the product, and enters it.
    void Register() { module.Register(wideProduct); }
    bool EnterProduct(const char* productId = product);
    void ExitProduct(const char* productId = product);
    void EnterAll();
    // Whether a second product is to be entered with the first one.
    bool hasOtherProduct = false;
    // Leaves with every product, whether or not it is entered, and takes all registrations back.
    void LeaveAll();

    // Whether the product is registered with the agent for all four services.
    static bool IsAttached();
    // Waits until the agent has nothing of ours any more; then says by test failures what is left. What was left by an
    // earlier cell is not said again.
    void ExpectNothingLeft();
    // The same for a product that stays entered.
    void ExpectOnlyTheClient();

    // Touches the registry until `happened` answers true; false when it did not within the time that things may take.
    static bool WaitForWatcher(const std::function<bool(std::chrono::milliseconds)>& happened);

    Trap trap;
    TrappedModule module{trap};
    // The process's instance, where Entry writes it.
    VsMsgbus* instance = nullptr;

private:
    void ExpectLeft(size_t handles, size_t clients);

    AgentEnvironment environment;
    std::filesystem::path folder;
    std::filesystem::path newerFolder;
    std::filesystem::path folderWithoutValues;
    size_t lostHandles = 0;
    size_t lostTasks = 0;
};
