#include "Stage.h"

#include <windows.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

namespace {

fs::path InstallFolder() {
    return fs::temp_directory_path() / ("agent-demo-" + std::to_string(::GetCurrentProcessId()));
}

}  // namespace

Stage::Stage(Narrator& storyNarrator)
    : narrator(storyNarrator),
      calls(storyNarrator),
      installer(simulator::AgentInstaller::BuildsBesideProgram(), InstallFolder()) {}

void Demand(bool isTrue, const char* whatIsWrong) {
    if (!isTrue) {
        throw std::runtime_error(whatIsWrong);
    }
}
