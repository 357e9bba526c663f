#include "tool/doctor/checks/ModuleFileChecks.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/checks/Dependencies.h"
#include "tool/pe/PeFile.h"

namespace tool::doctor {

namespace {

constexpr const char* moduleSteps[] = {"there", "machine type", "complete", "imports from the bridge", "dependencies"};

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
    const char* const name = moduleSteps[3];
    if (imports.empty()) {
        return Note(moduleGroup, name, {"none: the module looks the bridge's functions up itself, or is none"});
    }
    const std::vector<std::string> exports = PeFile(bridgeFile).Exports();
    std::vector<std::string> missing;
    std::copy_if(imports.begin(), imports.end(), std::back_inserter(missing), [&](const std::string& function) {
        return !std::binary_search(exports.begin(), exports.end(), function);
    });
    // A bridge that is not there is a finding of its own.
    if (!missing.empty() && !exports.empty()) {
        return Bad(moduleGroup, name, Problem::ModuleOfOtherBridge,
                   {path, fmt::format("{}", fmt::join(missing, ", ")), Utf8(bridgeFile)});
    }
    return Good(moduleGroup, name, {fmt::format("{}", fmt::join(imports, ", "))});
}

// The first bad check of the file's own; none when it can be loaded if what it needs is there.
std::optional<Check> WhyNoModule(const PeFile& image, const std::string& path, Checks& checks) {
    const auto bad = [](const char* step, Problem problem, std::vector<std::string> places) {
        return Bad(moduleGroup, step, problem, std::move(places));
    };
    if (!image.IsThere()) {
        return bad(moduleSteps[0], Problem::ModuleMissing, {path});
    }
    checks.push_back(Good(moduleGroup, moduleSteps[0], {path}));
    if (!image.IsImage()) {
        return bad(moduleSteps[1], Problem::ModuleIsNone, {path, "it does not begin as one does (error 193)"});
    }
    if (image.Machine() != IMAGE_FILE_MACHINE_AMD64) {
        return bad(moduleSteps[1], Problem::ModuleOfOtherMachine, {path, image.MachineName()});
    }
    checks.push_back(Good(moduleGroup, moduleSteps[1], {image.MachineName()}));
    if (!image.IsLibrary()) {
        return bad(moduleSteps[2], Problem::ModuleIsNone, {path, "it is a program"});
    }
    if (image.Size() < image.ExpectedSize()) {
        return bad(moduleSteps[2], Problem::ModuleIncomplete,
                   {path, std::to_string(image.Size()), std::to_string(image.ExpectedSize())});
    }
    checks.push_back(Good(moduleGroup, moduleSteps[2]));
    return std::nullopt;
}

}  // namespace

std::string ModuleFileResult::OnlyExportWithEnd(std::string_view end) const {
    const auto matches = [end](const std::string& name) { return name.ends_with(end); };
    const auto found = std::find_if(exports.begin(), exports.end(), matches);
    return std::count_if(exports.begin(), exports.end(), matches) == 1 ? *found : std::string();
}

ModuleFileResult CheckModuleFile(const std::filesystem::path& module, const std::filesystem::path& bridgeFolder) {
    ModuleFileResult result;
    const PeFile image(module);
    const std::string path = Utf8(module);
    if (const auto bad = WhyNoModule(image, path, result.checks)) {
        result.checks.push_back(*bad);
        for (size_t done = result.checks.size(); done < std::size(moduleSteps); ++done) {
            result.checks.push_back(NotReached(moduleGroup, moduleSteps[done]));
        }
        return result;
    }
    result.checks.push_back(CheckImports(image, path, bridgeFolder / "VsMsgbus.dll"));
    const auto missing = FindMissingDependency(module, {module.parent_path(), bridgeFolder, OwnFolder()});
    result.checks.push_back(
        missing ? Bad(moduleGroup, moduleSteps[4], Problem::ModuleNeedsOther, {path, missing->library, missing->why})
                : Good(moduleGroup, moduleSteps[4]));
    result.isUsable = std::none_of(result.checks.begin(), result.checks.end(),
                                   [](const Check& check) { return check.state == State::Bad; });
    result.exports = image.Exports();
    return result;
}

}  // namespace tool::doctor
