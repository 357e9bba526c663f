#include "AgentInstaller.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Registry.h"

namespace fs = std::filesystem;

namespace simulator {

namespace {

const std::string agentKey = "Software\\Corvane\\Agent";
const std::string applicationKey = agentKey + "\\Applications\\RDXAGENT3000";
const std::string versionValue = "MsgbusVersion";
const std::string runtimePathValue = "RuntimeSdkPath64";

// The runtime path stands in the 32-bit view of the registry for all programs, the version in the program's own.
constexpr REGSAM runtimePathView = KEY_WOW64_32KEY;
constexpr REGSAM versionView = KEY_WOW64_64KEY;

std::vector<fs::path> FilesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    return files;
}

bool IsAgentLibrary(const fs::path& file) {
    return file.extension() == ".dll" && file.filename().string().starts_with("ny_");
}

// The path as programs read it, in the ANSI code page. Which one that is differs from machine to machine, so that only
// ASCII is safe.
std::string TextOfPath(const fs::path& path) {
    std::string text = path.string();
    if (std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) {
        throw std::runtime_error("the agent cannot be installed in a folder whose name is not plain ASCII: " + text);
    }
    return text;
}

}  // namespace

AgentInstaller::AgentInstaller(fs::path buildsFolder, fs::path targetFolder)
    : builds(std::move(buildsFolder)), target(std::move(targetFolder)) {}

AgentInstaller::~AgentInstaller() {
    try {
        if (removed) {
            DeleteFolders();
        }
    } catch (const std::exception&) {
        // A folder that cannot be listed stays.
    }
}

fs::path AgentInstaller::BuildsBesideProgram() {
    std::wstring program(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    while (length == program.size()) {
        program.resize(2 * program.size());
        length = GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    }
    if (length == 0) {
        throw std::runtime_error("the program's own path cannot be found out");
    }
    program.resize(length);
    return fs::path(program).parent_path().parent_path() / "agent";
}

void AgentInstaller::Install(const std::string& version, const std::string& build) {
    const fs::path folder = MakeFolder(version);
    CopyBuild(build, folder);
    WriteRuntimePath(folder);
    currentFolder = folder;
    WriteVersion(version);
}

void AgentInstaller::Upgrade(const std::string& version, const std::string& build) {
    Install(version, build);
}

void AgentInstaller::Remove() {
    DeleteVersion();
    DeleteRegistryTree(HKEY_LOCAL_MACHINE, applicationKey, runtimePathView);
    removed = true;
    currentFolder.clear();
    DeleteFolders();
}

void AgentInstaller::WriteVersion(const std::string& text) {
    RegistryKey(HKEY_LOCAL_MACHINE, agentKey, KEY_SET_VALUE | versionView).WriteText(versionValue, text);
}

void AgentInstaller::DeleteVersion() {
    DeleteRegistryValue(HKEY_LOCAL_MACHINE, agentKey, versionValue, versionView);
}

void AgentInstaller::CreateAgentKey() {
    RegistryKey(HKEY_LOCAL_MACHINE, agentKey, KEY_SET_VALUE | versionView);
}

void AgentInstaller::DeleteAgentKey() {
    DeleteRegistryTree(HKEY_LOCAL_MACHINE, agentKey, versionView);
    DeleteRegistryTree(HKEY_LOCAL_MACHINE, agentKey, runtimePathView);
}

void AgentInstaller::TouchAgentKey() {
    TouchRegistryKey(HKEY_LOCAL_MACHINE, agentKey, versionView);
}

void AgentInstaller::WriteRuntimePath(const fs::path& path) {
    // Before the key is made: a refused path must not leave one behind.
    const std::string text = TextOfPath(path);
    RegistryKey(HKEY_LOCAL_MACHINE, applicationKey, KEY_SET_VALUE | runtimePathView).WriteText(runtimePathValue, text);
}

void AgentInstaller::DeleteRuntimePath() {
    DeleteRegistryValue(HKEY_LOCAL_MACHINE, applicationKey, runtimePathValue, runtimePathView);
}

fs::path AgentInstaller::MakeFolder(const std::string& version) {
    fs::create_directories(target);
    fs::path folder;
    do {
        folder = fs::absolute(target) / (version + "-" + std::to_string(++counter));
    } while (!fs::create_directory(folder));
    folders.push_back(folder);
    removed = false;
    return folder;
}

void AgentInstaller::CopyBuild(const std::string& build, const fs::path& folder) const {
    bool copied = false;
    for (const fs::path& file : FilesIn(builds / build)) {
        if (IsAgentLibrary(file)) {
            fs::copy_file(file, folder / file.filename());
            copied = true;
        }
    }
    if (!copied) {
        throw std::runtime_error("no libraries of the agent in " + (builds / build).string());
    }
}

void AgentInstaller::DeleteFolders() {
    std::erase_if(folders, [](const fs::path& folder) {
        // One by one: a file in use must not keep the others.
        std::error_code inUse;
        for (const fs::path& file : FilesIn(folder)) {
            fs::remove(file, inUse);
        }
        fs::remove(folder, inUse);
        return !inUse;
    });
    // Only when nothing else is in it.
    std::error_code notEmpty;
    fs::remove(target, notEmpty);
}

}  // namespace simulator
