#include "kit/setup/Machine.h"

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <utility>

#include "kit/setup/LastError.h"

namespace fs = std::filesystem;
using simulator::AgentInstaller;

namespace {

std::atomic<bool> hasMachine = false;

fs::path BuildsIn(const char* folder) {
    return folder == nullptr ? AgentInstaller::BuildsBesideProgram()
                             : fs::path(reinterpret_cast<const char8_t*>(folder));
}

fs::path FolderOfThisProcess() {
    return fs::temp_directory_path() / ("agent-" + std::to_string(::GetCurrentProcessId()));
}

}  // namespace

ny_setup_machine::Turn::Turn() {
    if (hasMachine.exchange(true)) {
        throw kit::Refusal(NY_SETUP_MACHINE_EXISTS, "this process has a machine: destroy it first");
    }
}

ny_setup_machine::Turn::~Turn() {
    hasMachine = false;
}

ny_setup_machine::ny_setup_machine(const char* builds) : installer(BuildsIn(builds), FolderOfThisProcess()) {}

const char* ny_setup_machine::CurrentFolder() {
    const std::lock_guard guard(mutex);
    // Other threads may have the text.
    if (std::string folder = installer.CurrentFolder().string(); folder != currentFolder) {
        currentFolder = std::move(folder);
    }
    return currentFolder.c_str();
}
