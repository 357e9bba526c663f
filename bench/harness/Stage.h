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

    // For another installation of the same agent.
    simulator::AgentInstaller& Installer() { return installer; }

private:
    simulator::RegistryRedirect redirect;
    simulator::AgentInstaller installer;
};

}  // namespace bench
