#include "tool/doctor/checks/ModuleFileChecks.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>
#include <vector>

#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/checks/Dependencies.h"
#include "tool/doctor/checks/LibraryFile.h"
#include "tool/pe/PeFile.h"

namespace tool::doctor {

namespace {

constexpr char importsCheck[] = "imports from the bridge";
constexpr char dependenciesCheck[] = "dependencies";

std::vector<std::string> ImportsFromBridge(const PeFile& module) {
    std::vector<std::string> functions;
    for (const PeImport& import : module.Imports()) {
        if (::lstrcmpiA(import.library.c_str(), "VsMsgbus.dll") == 0) {
            functions.insert(functions.end(), import.functions.begin(), import.functions.end());
        }
    }
    return functions;
}

Check CheckImports(const PeFile& module, const std::string& path, const std::filesystem::path& bridgeFile) {
    const std::vector<std::string> imports = ImportsFromBridge(module);
    if (imports.empty()) {
        return Note(moduleGroup, importsCheck, {"none: the module looks the bridge's functions up itself, or is none"});
    }
    const std::vector<std::string> exports = PeFile(bridgeFile).Exports();
    std::vector<std::string> missing;
    std::copy_if(imports.begin(), imports.end(), std::back_inserter(missing), [&](const std::string& function) {
        return !std::binary_search(exports.begin(), exports.end(), function);
    });
    // A bridge that is not there is a finding of its own.
    if (!missing.empty() && !exports.empty()) {
        return Bad(moduleGroup, importsCheck, Problem::ModuleOfOtherBridge,
                   {path, fmt::format("{}", fmt::join(missing, ", ")), Utf8(bridgeFile)});
    }
    return Good(moduleGroup, importsCheck, {fmt::format("{}", fmt::join(imports, ", "))});
}

LibraryFileTexts ModuleTexts() {
    return {moduleGroup,
            "",
            "",
            Problem::ModuleMissing,
            Problem::ModuleIsNone,
            Problem::ModuleOfOtherMachine,
            Problem::ModuleIncomplete};
}

}  // namespace

std::string ModuleFileResult::OnlyExportEndingIn(std::string_view ending) const {
    const auto matches = [ending](const std::string& name) { return name.ends_with(ending); };
    const auto found = std::find_if(exports.begin(), exports.end(), matches);
    return std::count_if(exports.begin(), exports.end(), matches) == 1 ? *found : std::string();
}

ModuleFileResult CheckModuleFile(const std::filesystem::path& module, const std::filesystem::path& bridgeFolder) {
    ModuleFileResult result;
    const PeFile image(module);
    const std::string path = Utf8(module);
    if (!CheckLibraryFile(image, path, ModuleTexts(), result.checks)) {
        for (size_t done = result.checks.size(); done < std::size(libraryFileSteps); ++done) {
            result.checks.push_back(NotReached(moduleGroup, libraryFileSteps[done]));
        }
        result.checks.push_back(NotReached(moduleGroup, importsCheck));
        result.checks.push_back(NotReached(moduleGroup, dependenciesCheck));
        return result;
    }
    result.checks.push_back(CheckImports(image, path, bridgeFolder / "VsMsgbus.dll"));
    const auto missing = FindMissingDependency(module, {module.parent_path(), bridgeFolder, OwnFolder()});
    result.checks.push_back(
        missing ? Bad(moduleGroup, dependenciesCheck, Problem::ModuleNeedsOther, {path, missing->library, missing->why})
                : Good(moduleGroup, dependenciesCheck));
    result.isUsable = std::none_of(result.checks.begin(), result.checks.end(),
                                   [](const Check& check) { return check.state == State::Bad; });
    result.exports = image.Exports();
    return result;
}

}  // namespace tool::doctor
