#pragma once

#include <filesystem>
#include <string>

#include "AgentInstaller.h"
#include "RegistryRedirect.h"

namespace bench {

// A machine of the program's own with the bare agent installed: HKEY_LOCAL_MACHINE is redirected, and the agent's
// libraries stand in a folder of this process. Every failure throws std::runtime_error.
class Stage {
public:
    Stage();
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    // Where the agent's libraries were installed.
    std::filesystem::path Folder() const { return installer.CurrentFolder(); }

    // For upgrades: another version each time, and the one of two folders with the same agent that was not given last.
    std::string NextVersion() { return "6." + std::to_string(++versions); }
    std::filesystem::path OtherFolder();

private:
    simulator::RegistryRedirect redirect;
    simulator::AgentInstaller installer;
    std::filesystem::path folders[2];
    unsigned versions = 0;
};

}  // namespace bench
