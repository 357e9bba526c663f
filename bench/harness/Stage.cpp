#include "bench/harness/Stage.h"

#include <windows.h>

#include <exception>

using simulator::AgentInstaller;

namespace bench {

namespace {

std::filesystem::path FolderOfThisProcess() {
    return std::filesystem::temp_directory_path() / ("bench-agent-" + std::to_string(::GetCurrentProcessId()));
}

std::filesystem::path Builds() {
    return AgentInstaller::BuildsBesideProgram().parent_path() / "bench" / "agent";
}

}  // namespace

Stage::Stage() : installer(Builds(), FolderOfThisProcess()) {
    installer.Install("5.7.0", "bare");
    folders[1] = Folder();
    installer.Upgrade("5.8.0", "bare");
    folders[0] = Folder();
}

Stage::~Stage() {
    try {
        installer.Remove();
    } catch (const std::exception&) {
        // Files of the temporary folder.
    }
}

std::filesystem::path Stage::OtherFolder() {
    std::swap(folders[0], folders[1]);
    return folders[0];
}

}  // namespace bench
