#include "checking/AgentLook.h"

#include <windows.h>

#include <string>

#include "agent/ny_agent.h"
#include "base/Boundary.h"
#include "checking/Findings.h"
#include "dispatcher/EntryPoint.h"
#include "dispatcher/RuntimePath.h"
#include "msgbus/client/AgentKey.h"

namespace checking {

namespace {

thread_local std::optional<int32_t> lastRefusal;

std::string WhyNotOpened(const std::string& path, uint32_t code) {
    const std::string folder = path.substr(0, path.find_last_of("\\/"));
    if (::GetFileAttributesA(folder.c_str()) == INVALID_FILE_ATTRIBUTES) {
        return "there is no folder " + folder;
    }
    if (::GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        return "there is no such file in its folder";
    }
    switch (code) {
        case ERROR_MOD_NOT_FOUND: return "a library that it needs is missing";
        case ERROR_BAD_EXE_FORMAT: return "it is no library for processes of 64 bits";
        default: return "the system says " + std::to_string(code);
    }
}

}  // namespace

void LookForAgent() {
    bridge::AgentKey key;
    bridge::AgentVersion version{};
    std::optional<std::string> path;
    if (const LSTATUS status = key.Open(); status != ERROR_SUCCESS) {
        Report(Rule::AgentAbsent, "", {std::to_string(status)});
    } else if (key.ReadVersion(version) != ERROR_SUCCESS || version[0] == '\0') {
        Report(Rule::AgentWithoutVersion, "");
    } else if (bridge::LookUpRuntimePath(bridge::agentSoftwareId, path) != 0) {
        Report(Rule::AgentWithoutPath, "");
    }
}

void NoteLibraryNotOpened(const char* path, uint32_t code) noexcept {
    bridge::Guarded([&] { Report(Rule::AgentLibrary, "", {path, WhyNotOpened(path, code)}); });
}

void NoteRefusal(int32_t code) noexcept {
    lastRefusal = code;
    if (code == NY_FUNCTION_MISSING) {
        Report(Rule::AgentExport, "");
    }
}

void ForgetRefusal() noexcept {
    lastRefusal.reset();
}

std::optional<int32_t> LastRefusal() noexcept {
    return lastRefusal;
}

}  // namespace checking
