#include "reentrancy/World.h"

#include <windows.h>

#include "support/AgentTasks.h"
#include "support/BridgeTest.h"
#include "support/OnPurpose.h"
#include "support/PolicyValues.h"

using simulator::AgentInstaller;

namespace {

constexpr std::chrono::seconds longestWait{50};  // three waits of the bridge's, and some

constexpr char policies[] = R"([
    {"softwareId": "PRODUCT1000", "feature": "F1", "category": "QTP_General_Policies", "type": "T1", "name": "N1",
     "settingsObject": {"name": "P1", "intParameter": "1", "stringParameter": "a", "digest": "d1"},
     "sections": [{"name": "S1", "settings": {"x": "1", "y": "2"}}, {"name": "S2", "settings": {"z": "3"}}]}])";
constexpr char tasks[] = R"([{"id": "task", "product": "PRODUCT1000", "name": "The task", "type": "Scan", "settings": {
    "Scan": {"Folder": "C:\\", "Depth": "12", "Deep": "TRUE"}}}])";

bool IsAgentLoaded() {
    for (const char* library : {"ny_client.dll", "ny_variant.dll", "ny_msgbus.dll", "ny_logger.dll"}) {
        if (::GetModuleHandleA(library) != nullptr) {
            return true;
        }
    }
    return false;
}

}  // namespace

ReentrancyWorld::ReentrancyWorld() {
    environment.InstallAgent("5.7.1");
    newerFolder = environment.Installer().CurrentFolder();
    environment.UpgradeAgent("5.7.2");
    folderWithoutValues = environment.Installer().CurrentFolder();
    std::filesystem::remove(folderWithoutValues / "ny_variant.dll");
    environment.UpgradeAgent("5.7.0");
    folder = environment.Installer().CurrentFolder();
    PolicyValues::MakeKey();
    getLogManager()->SetListener(&module);
    FillAgent();
}

ReentrancyWorld::~ReentrancyWorld() {
    LeaveAll();
    getLogManager()->SetListener(nullptr);
}

void ReentrancyWorld::PutAgent() {
    AgentInstaller::WriteRuntimePath(folder);
    AgentInstaller::WriteVersion("5.7.0");
}

void ReentrancyWorld::PutNewerAgent() {
    AgentInstaller::WriteRuntimePath(newerFolder);
    AgentInstaller::WriteVersion("5.7.1");
}

void ReentrancyWorld::PutAgentWithoutValues() {
    AgentInstaller::WriteRuntimePath(folderWithoutValues);
    AgentInstaller::WriteVersion("5.7.2");
}

void ReentrancyWorld::TakeAgentAway() {
    AgentInstaller::DeleteVersion();
}

void ReentrancyWorld::FillAgent() {
    ny_sim_reset();
    EXPECT_EQ(ny_sim_policies_from_json(policies), NY_OK);
    SetTasks(tasks);
    EXPECT_EQ(ny_sim_set_all_information(R"({"AgentMode": "1", "GUID": "{1-2}", "Version": "5.7.0"})"), NY_OK);
}

bool ReentrancyWorld::EnterProduct(const char* productId) {
    return VsMsgbusEntry(productId, allServices, &module.sink, &instance);
}

void ReentrancyWorld::ExitProduct(const char* productId) {
    EXPECT_TRUE(VsMsgbusExit(productId, instance));
}

void ReentrancyWorld::EnterAll() {
    Register();
    EXPECT_TRUE(EnterProduct());
    if (hasOtherProduct) {
        EXPECT_TRUE(EnterProduct(otherProduct));
    }
    EXPECT_TRUE(IsAttached());
}

void ReentrancyWorld::LeaveAll() {
    const OnPurpose mistakes{"EXIT-UNKNOWN", "EXIT-OTHER-INSTANCE", "REMOVE-UNKNOWN"};
    ExitProduct(otherProduct);
    ExitProduct();
    TrappedModule::Remove(wideProduct);
    TrappedModule::Remove(wideOtherProduct);
}

bool ReentrancyWorld::IsAttached() {
    return ny_sim_has_property_provider(product) != 0 && ny_sim_has_policy_callback(product) != 0 &&
           ny_sim_has_task_callbacks(product, nullptr) != 0 && ny_sim_has_updater(product) != 0;
}

// Libraries come and go without an event that one could wait for.
void ReentrancyWorld::ExpectNothingLeft() {
    EXPECT_EQ(ny_sim_wait_idle(static_cast<uint32_t>(soon.count())), NY_OK);
    const auto end = std::chrono::steady_clock::now() + longestWait;
    while ((IsAgentLoaded() || ny_sim_started_clients() != 0) && std::chrono::steady_clock::now() < end) {
        ::Sleep(1);
    }
    EXPECT_FALSE(IsAgentLoaded());
    ExpectLeft(0, 0);
}

void ReentrancyWorld::ExpectOnlyTheClient() {
    EXPECT_EQ(ny_sim_wait_idle(static_cast<uint32_t>(soon.count())), NY_OK);
    EXPECT_TRUE(IsAttached());
    ExpectLeft(1, 1);
}

void ReentrancyWorld::ExpectLeft(size_t handles, size_t clients) {
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), lostHandles + handles);
    EXPECT_EQ(ny_sim_started_clients(), clients);
    EXPECT_EQ(ny_sim_lent_tasks(), lostTasks);
    EXPECT_EQ(ny_sim_misuse_count(), 0U) << ny_sim_last_misuse();
    const size_t alive = ny_sim_live_handles(NY_SIM_ANY);
    lostHandles = alive > handles ? alive - handles : 0;
    lostTasks = ny_sim_lent_tasks();
    FillAgent();
}

bool ReentrancyWorld::WaitForWatcher(const std::function<bool(std::chrono::milliseconds)>& happened) {
    return SeenByWatcher(happened);
}
