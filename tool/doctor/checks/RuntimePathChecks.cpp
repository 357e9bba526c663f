#include "tool/doctor/checks/RuntimePathChecks.h"

#include <fmt/format.h>

#include <filesystem>

#include "dispatcher/EntryPoint.h"
#include "dispatcher/RuntimePath.h"
#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/Writers.h"
#include "tool/doctor/checks/RawValue.h"

namespace tool::doctor {

namespace {

constexpr char valueCheck[] = "RuntimeSdkPath64, 32-bit view";
constexpr char valueWritersCheck[] = "who may write the value";
constexpr char wholeCheck[] = "a whole path";
constexpr char folderCheck[] = "a folder that is there";
constexpr char folderWritersCheck[] = "who may write the folder";

std::string ApplicationKey() {
    return std::string(R"(Software\Corvane\Agent\Applications\)") + bridge::agentSoftwareId;
}

RawValue ReadIn(REGSAM view) {
    return ReadRawValue(ApplicationKey().c_str(), "RuntimeSdkPath64", view);
}

std::string SeenAs(const RawValue& value) {
    std::string line = fmt::format("\"{}\", {}, {} bytes", value.text, value.TypeName(), value.size);
    if (value.type == REG_EXPAND_SZ && value.text.find('%') != std::string::npos) {
        line += "; the bridge does not replace what stands between %";
    }
    return line;
}

Check WithoutValue() {
    if (const RawValue raw = ReadIn(KEY_WOW64_32KEY); raw.IsThere()) {
        return Bad(pathGroup, valueCheck, Problem::PathTooLong, {std::to_string(raw.size)}, {SeenAs(raw)});
    }
    std::vector<std::string> details;
    if (const RawValue other = ReadIn(KEY_WOW64_64KEY); other.IsThere()) {
        details.push_back("the 64-bit view has it, " + SeenAs(other) + "; the bridge reads the 32-bit view");
    }
    return Bad(pathGroup, valueCheck, Problem::PathAbsent, {R"(HKEY_LOCAL_MACHINE\)" + ApplicationKey()},
               std::move(details));
}

Check CheckValueWriters() {
    HKEY opened = nullptr;
    ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, ApplicationKey().c_str(), 0, READ_CONTROL | KEY_WOW64_32KEY, &opened);
    const bridge::UniqueKey key(opened);
    const Writers writers = WritersOf(key.get());
    return {pathGroup, valueWritersCheck, writers.areAdministrators ? State::Good : State::Note, {writers.Text()}};
}

Check CheckWhole(const std::string& path) {
    return std::filesystem::path(PathOf(path)).is_absolute()
               ? Good(pathGroup, wholeCheck)
               : Bad(pathGroup, wholeCheck, Problem::PathNotAbsolute, {path});
}

Check CheckFolderWriters(const std::filesystem::path& folder) {
    const Writers writers = WritersOf(folder);
    return {pathGroup, folderWritersCheck, writers.areAdministrators ? State::Good : State::Note, {writers.Text()}};
}

// 0 for a folder, else the system's code.
DWORD WhyNoFolder(const std::filesystem::path& folder) {
    const DWORD attributes = ::GetFileAttributesW(folder.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return ::GetLastError();
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? ERROR_SUCCESS : ERROR_DIRECTORY;
}

void CheckFolder(const std::string& path, RuntimePathResult& result) {
    const std::string text = Utf8OfAnsi(path);
    result.checks.push_back(CheckWhole(text));
    const std::filesystem::path folder = PathOf(text);
    if (const DWORD error = WhyNoFolder(folder); error != ERROR_SUCCESS) {
        result.checks.push_back(
            Bad(pathGroup, folderCheck, Problem::PathWrong, {text, std::to_string(error)}, {SystemText(error)}));
        result.checks.push_back(NotReached(pathGroup, folderWritersCheck));
        return;
    }
    result.checks.push_back(Good(pathGroup, folderCheck, {text}));
    result.checks.push_back(CheckFolderWriters(folder));
    result.folder = path;
}

}  // namespace

RuntimePathResult CheckRuntimePath() {
    std::optional<std::string> path;
    const bool isRead = bridge::LookUpRuntimePath(bridge::agentSoftwareId, path) == NY_OK && path.has_value();
    RuntimePathResult result;
    if (!isRead) {
        result.checks = {WithoutValue(), NotReached(pathGroup, valueWritersCheck)};
    } else if (path->empty()) {
        result.checks = {Bad(pathGroup, valueCheck, Problem::PathEmpty, {}, {SeenAs(ReadIn(KEY_WOW64_32KEY))}),
                         CheckValueWriters()};
    } else {
        result.checks = {Good(pathGroup, valueCheck, {SeenAs(ReadIn(KEY_WOW64_32KEY))}), CheckValueWriters()};
        CheckFolder(*path, result);
        return result;
    }
    for (const char* const name : {wholeCheck, folderCheck, folderWritersCheck}) {
        result.checks.push_back(NotReached(pathGroup, name));
    }
    return result;
}

}  // namespace tool::doctor
