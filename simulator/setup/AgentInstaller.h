// Installs, upgrades and removes the simulated agent as the agent's own installer does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace simulator {

// Writes to HKEY_LOCAL_MACHINE, so a RegistryRedirect is usually in force. Every failure throws a std::runtime_error,
// std::system_error among them; deleting what is not there succeeds. Not for several threads at once.
class AgentInstaller {
public:
    // `builds` holds the builds of the agent, one folder each; below `target`, which is made when needed, each
    // installation gets a folder of its own.
    AgentInstaller(std::filesystem::path builds, std::filesystem::path target);
    // Deletes files that Remove had to leave. An agent that is installed stays.
    ~AgentInstaller();
    AgentInstaller(const AgentInstaller&) = delete;
    AgentInstaller& operator=(const AgentInstaller&) = delete;

    // The folder agent/ beside the program's own folder, where the builds stand in this project's build folder.
    static std::filesystem::path BuildsBesideProgram();

    // Copies the build's libraries into a new folder, then writes the runtime path, then the version, which programs
    // that wait for the agent watch.
    void Install(const std::string& version, const std::string& build = "full");
    // The same; the files of the earlier version stay until Remove, because they may be in use.
    void Upgrade(const std::string& version, const std::string& build = "full");
    // Deletes the version, then the application's key, then all folders that this installer made. Files that are in use
    // are left for the destructor.
    void Remove();

    // The single steps, for tests that need an agent that is half installed.
    static void WriteVersion(const std::string& text);
    static void DeleteVersion();
    static void CreateAgentKey();  // without a version
    static void DeleteAgentKey();  // with everything below it, in both views of the registry
    static void TouchAgentKey();   // see TouchRegistryKey
    static void WriteRuntimePath(const std::filesystem::path& path);
    static void DeleteRuntimePath();

    // The folder of the last installation; empty when there is none.
    const std::filesystem::path& CurrentFolder() const { return currentFolder; }

private:
    std::filesystem::path MakeFolder(const std::string& version);
    void CopyBuild(const std::string& build, const std::filesystem::path& folder) const;
    void DeleteFolders();

    std::filesystem::path builds;
    std::filesystem::path target;
    std::filesystem::path currentFolder;
    std::vector<std::filesystem::path> folders;  // made and not yet deleted
    bool removed = false;
    unsigned counter = 0;
};

}  // namespace simulator
