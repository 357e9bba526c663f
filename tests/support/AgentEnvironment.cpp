#include "support/AgentEnvironment.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <iterator>

#include "support/HeldLocks.h"

using simulator::AgentInstaller;

namespace {

std::filesystem::path FolderOfThisProcess() {
    return std::filesystem::temp_directory_path() / ("agent-" + std::to_string(::GetCurrentProcessId()));
}

}  // namespace

AgentEnvironment::AgentEnvironment() : installer(AgentInstaller::BuildsBesideProgram(), FolderOfThisProcess()) {
    ny_sim_reset();
    ny_sim_set_held_locks(&HeldLocks);
}

AgentEnvironment::~AgentEnvironment() {
    try {
        installer.Remove();
    } catch (const std::exception& failure) {
        ADD_FAILURE() << failure.what();
    }
}

void AgentEnvironment::InstallAgent(const std::string& version, const std::string& build) {
    installer.Install(version, build);
}

void AgentEnvironment::UpgradeAgent(const std::string& version, const std::string& build) {
    installer.Upgrade(version, build);
}

void AgentEnvironment::RemoveAgent() {
    installer.Remove();
}

bool WaitUntil(const std::function<bool()>& isMet) {
    constexpr std::chrono::milliseconds patience{5};
    constexpr size_t never = SIZE_MAX;
    for (int i = 0; i < soon / patience && !isMet(); ++i) {
        ny_sim_wait_calls("ny_client_handler_release", never, static_cast<uint32_t>(patience.count()));
    }
    return isMet();
}

namespace {

bool IsLoaded(const char* library) {
    return ::GetModuleHandleA(library) != nullptr;
}

bool HasNothingOfTheAgent() {
    constexpr const char* libraries[] = {"ny_client.dll", "ny_variant.dll", "ny_msgbus.dll", "ny_logger.dll"};
    return ny_sim_live_handles(NY_SIM_ANY) == 0 && std::none_of(std::begin(libraries), std::end(libraries), IsLoaded);
}

}  // namespace

bool AgentIsLetGo() {
    return WaitUntil(HasNothingOfTheAgent);
}

void AgentTest::TearDown() {
    WaitUntil([] { return ny_sim_live_handles(NY_SIM_ANY) == 0; });
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    EXPECT_EQ(ny_sim_misuse_count(), 0U) << ny_sim_last_misuse();
}

bool WaitForAgentCalls(const char* function, size_t count) {
    return ny_sim_wait_calls(function, count, static_cast<uint32_t>(soon.count())) == NY_OK;
}
