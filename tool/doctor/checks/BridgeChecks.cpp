#include "tool/doctor/checks/BridgeChecks.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/pe/PeFile.h"

namespace tool::doctor {

namespace {

constexpr char bridgeCheck[] = "VsMsgbus.dll";
constexpr char logCheck[] = "LogLib.dll";

// Why a process of this machine type cannot load the file; none when it can, as far as the file says.
std::optional<std::string> WhyUnusable(const PeFile& file) {
    if (!file.IsImage() || !file.IsLibrary()) {
        return "is no library of Windows (error 193)";
    }
    if (file.Machine() != IMAGE_FILE_MACHINE_AMD64) {
        return fmt::format("is made for another machine type, {} (error 193)", file.MachineName());
    }
    if (file.Size() < file.ExpectedSize()) {
        return fmt::format("is cut off: it has {} bytes, and its headers speak of {}", file.Size(),
                           file.ExpectedSize());
    }
    return std::nullopt;
}

std::string VersionOf(const std::filesystem::path& file) {
    DWORD unused = 0;
    std::vector<char> block(::GetFileVersionInfoSizeW(file.c_str(), &unused));
    void* found = nullptr;
    UINT size = 0;
    if (block.empty() || ::GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) == 0 ||
        ::VerQueryValueW(block.data(), L"\\", &found, &size) == 0) {
        return "no version in the file";
    }
    const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(found);
    return fmt::format("version {}.{}.{}", HIWORD(version.dwFileVersionMS), LOWORD(version.dwFileVersionMS),
                       HIWORD(version.dwFileVersionLS));
}

std::string KindOf(const PeFile& bridge) {
    const std::vector<std::string> exports = bridge.Exports();
    return std::binary_search(exports.begin(), exports.end(), "VsMsgbusCheckFindings")
               ? "the checking bridge, which is for development alone"
               : "the shipped bridge";
}

// The first function that the bridge imports from it and that it does not export.
std::optional<std::string> MissingIn(const PeFile& log, const PeFile& bridge) {
    const std::vector<std::string> exports = log.Exports();
    for (const PeImport& import : bridge.Imports()) {
        if (::lstrcmpiA(import.library.c_str(), logCheck) != 0) {
            continue;
        }
        for (const std::string& function : import.functions) {
            if (!std::binary_search(exports.begin(), exports.end(), function)) {
                return function;
            }
        }
    }
    return std::nullopt;
}

Check CheckLogLib(const std::filesystem::path& folder, const PeFile& bridge) {
    const std::filesystem::path file = folder / logCheck;
    const PeFile log(file);
    if (!log.IsThere()) {
        return Bad(bridgeGroup, logCheck, Problem::LogLibMissing, {Utf8(folder)});
    }
    if (const auto why = WhyUnusable(log)) {
        return Bad(bridgeGroup, logCheck, Problem::LogLibUnusable, {Utf8(file), *why});
    }
    if (const auto function = MissingIn(log, bridge)) {
        return Bad(bridgeGroup, logCheck, Problem::LogLibUnusable,
                   {Utf8(file), "does not export " + *function + " (error 127)"});
    }
    return Good(bridgeGroup, logCheck, {Utf8(file)});
}

}  // namespace

Checks CheckBridge(const std::filesystem::path& folder) {
    const std::filesystem::path file = folder / bridgeCheck;
    const PeFile bridge(file);
    if (!bridge.IsThere()) {
        return {Bad(bridgeGroup, bridgeCheck, Problem::BridgeMissing, {Utf8(folder)}),
                NotReached(bridgeGroup, logCheck)};
    }
    if (const auto why = WhyUnusable(bridge)) {
        return {Bad(bridgeGroup, bridgeCheck, Problem::BridgeUnusable, {Utf8(file), *why}),
                NotReached(bridgeGroup, logCheck)};
    }
    return {Good(bridgeGroup, bridgeCheck, {Utf8(file), VersionOf(file) + ", " + KindOf(bridge)}),
            CheckLogLib(folder, bridge)};
}

}  // namespace tool::doctor
