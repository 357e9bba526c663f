#include "support/AgentEnvironment.h"

#include <windows.h>

#include <exception>
#include <filesystem>

using simulator::AgentInstaller;

namespace {

std::filesystem::path FolderOfThisProcess() {
    return std::filesystem::temp_directory_path() / ("agent-" + std::to_string(::GetCurrentProcessId()));
}

}  // namespace

AgentEnvironment::AgentEnvironment() : installer(AgentInstaller::BuildsBesideProgram(), FolderOfThisProcess()) {
    ny_sim_reset();
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

void AgentTest::TearDown() {
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    EXPECT_EQ(ny_sim_misuse_count(), 0U) << ny_sim_last_misuse();
}

bool WaitForAgentCalls(const char* function, size_t count) {
    return ny_sim_wait_calls(function, count, static_cast<uint32_t>(soon.count())) == NY_OK;
}
