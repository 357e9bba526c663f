#include "MachineFacts.h"

#include <fmt/format.h>
// clang-format off: winsock2.h comes before windows.h
#include <windows.h>
#include <winsock2.h>
// clang-format on

namespace {

constexpr uint64_t mebibyte = 1024ULL * 1024;

std::string Mebibytes(uint64_t bytes) {
    return fmt::format("{} MiB", bytes / mebibyte);
}

template <class Function>
Function* FindInNtdll(const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), name)));
}

// GetVersionEx tells a program the version that the program was made for; this tells the machine's.
void AddOperatingSystem(std::vector<MachineFact>& facts) {
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (auto* const getVersion = FindInNtdll<LONG WINAPI(OSVERSIONINFOW*)>("RtlGetVersion")) {
        getVersion(&version);
        facts.push_back(
            {"System", "OsVersion",
             fmt::format("{}.{}.{}", version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber)});
    }
    std::string name = "Windows";
    if (auto* const getWineVersion = FindInNtdll<const char*()>("wine_get_version")) {
        name += " (Wine " + std::string(getWineVersion()) + ")";
    }
    facts.push_back({"System", "OsName", name});
}

void AddHostName(std::vector<MachineFact>& facts) {
    WSADATA sockets{};
    if (::WSAStartup(MAKEWORD(2, 2), &sockets) != 0) {
        return;
    }
    constexpr int longestName = 256;
    char name[longestName] = {};
    if (::gethostname(name, longestName) == 0) {
        facts.push_back({"System", "HostName", name});
    }
    ::WSACleanup();
}

void AddProcessors(std::vector<MachineFact>& facts) {
    SYSTEM_INFO system{};
    ::GetNativeSystemInfo(&system);
    facts.push_back({"Hardware", "Processors", std::to_string(system.dwNumberOfProcessors)});
}

void AddMemory(std::vector<MachineFact>& facts) {
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    if (::GlobalMemoryStatusEx(&memory) != FALSE) {
        facts.push_back({"Hardware", "Memory", Mebibytes(memory.ullTotalPhys)});
        facts.push_back({"Hardware", "FreeMemory", Mebibytes(memory.ullAvailPhys)});
    }
}

void AddDisk(std::vector<MachineFact>& facts) {
    wchar_t windows[MAX_PATH] = {};
    ULARGE_INTEGER available{};
    if (::GetWindowsDirectoryW(windows, MAX_PATH) != 0 &&
        ::GetDiskFreeSpaceExW(windows, &available, nullptr, nullptr) != FALSE) {
        facts.push_back({"Hardware", "FreeDisk", Mebibytes(available.QuadPart)});
    }
}

void AddUptime(std::vector<MachineFact>& facts) {
    constexpr uint64_t millisecondsPerMinute = 60000;
    const uint64_t minutes = ::GetTickCount64() / millisecondsPerMinute;
    facts.push_back({"System", "Uptime", fmt::format("{} h {} min", minutes / 60, minutes % 60)});
}

}  // namespace

std::vector<MachineFact> ReadMachineFacts() {
    std::vector<MachineFact> facts;
    AddOperatingSystem(facts);
    AddHostName(facts);
    AddUptime(facts);
    AddProcessors(facts);
    AddMemory(facts);
    AddDisk(facts);
    return facts;
}
