#include "tool/doctor/checks/LibraryChecks.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "tool/doctor/AgentFunctions.h"
#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/checks/Dependencies.h"
#include "tool/doctor/checks/LibraryFile.h"
#include "tool/pe/PeFile.h"

namespace tool::doctor {

namespace {

// The steps of one library behind those of its file; each needs those before.
constexpr const char* furtherSteps[] = {"dependencies", "exports"};

std::string StepName(const AgentLibrary& library, const char* step) {
    return fmt::format("{}: {}", library.file, step);
}

// The functions that the file lacks, by the part of the bridge that does not work without them.
struct Lacking {
    explicit Lacking(const PeFile& file, const AgentLibrary& library) {
        const std::vector<std::string> exported = file.Exports();
        for (const std::string_view function : FunctionsOf(library.file)) {
            ++all;
            if (!std::binary_search(exported.begin(), exported.end(), function)) {
                ++missing;
                const std::string_view use = UseOf(function);
                (use.empty() ? notMissed : byUse[std::string(use)]).emplace_back(function);
            }
        }
    }

    size_t all = 0;
    size_t missing = 0;
    std::map<std::string, std::vector<std::string>> byUse;
    std::vector<std::string> notMissed;
};

std::vector<std::string> DetailsOf(const Lacking& lacking) {
    std::vector<std::string> details = {
        fmt::format("{} of the {} functions that the bridge looks for", lacking.all - lacking.missing, lacking.all)};
    for (const auto& [use, functions] : lacking.byUse) {
        details.push_back(fmt::format("without {} there is no {}", fmt::join(functions, ", "), use));
    }
    if (!lacking.notMissed.empty()) {
        details.push_back(fmt::format("the bridge does without {}", fmt::join(lacking.notMissed, ", ")));
    }
    return details;
}

Check CheckExports(const PeFile& file, const std::string& path, const AgentLibrary& library) {
    const Lacking lacking(file, library);
    const std::string name = StepName(library, "exports");
    if (lacking.missing == lacking.all) {
        return Bad(libraryGroup, name, Problem::LibraryWithoutExports, {path, std::to_string(lacking.all), library.use},
                   {fmt::format("none of the {} functions that the bridge looks for", lacking.all)});
    }
    if (lacking.byUse.empty()) {
        return {libraryGroup, name, lacking.missing == 0 ? State::Good : State::Note, DetailsOf(lacking)};
    }
    std::vector<std::string> functions;
    std::vector<std::string> uses;
    for (const auto& [use, ofUse] : lacking.byUse) {
        functions.insert(functions.end(), ofUse.begin(), ofUse.end());
        uses.push_back("no " + use);
    }
    return Bad(libraryGroup, name, Problem::LibraryLacksExports,
               {path, fmt::format("{}", fmt::join(functions, ", ")), fmt::format("there is {}", fmt::join(uses, ", "))},
               DetailsOf(lacking));
}

// Adds the checks of the library up to its first bad one; whether there was none that keeps it from being loaded.
bool CheckLibrary(const std::filesystem::path& folder, const AgentLibrary& library, Checks& checks) {
    const std::filesystem::path file = folder / library.file;
    const std::string path = Utf8(file);
    const PeFile image(file);
    const LibraryFileTexts texts = {libraryGroup,
                                    StepName(library, ""),
                                    library.use,
                                    Problem::LibraryMissing,
                                    Problem::LibraryIsNone,
                                    Problem::LibraryOfOtherMachine,
                                    Problem::LibraryIncomplete};
    if (!CheckLibraryFile(image, path, texts, checks)) {
        return false;
    }
    if (const auto missing = FindMissingDependency(file, {folder})) {
        checks.push_back(Bad(libraryGroup, StepName(library, "dependencies"), Problem::LibraryNeedsOther,
                             {path, missing->library, missing->why}));
        return false;
    }
    checks.push_back(Good(libraryGroup, StepName(library, "dependencies")));
    checks.push_back(CheckExports(image, path, library));
    return true;
}

std::vector<std::string> StepsOf(const AgentLibrary& library) {
    std::vector<std::string> names;
    for (const auto* const step : libraryFileSteps) {
        names.push_back(StepName(library, step));
    }
    for (const auto* const step : furtherSteps) {
        names.push_back(StepName(library, step));
    }
    return names;
}

}  // namespace

LibraryResult CheckLibraries(const std::optional<std::string>& ansiFolder) {
    LibraryResult result;
    for (const AgentLibrary& library : AgentLibraries()) {
        const size_t before = result.checks.size();
        if (ansiFolder && CheckLibrary(PathOf(Utf8OfAnsi(*ansiFolder)), library, result.checks)) {
            result.usable.emplace_back(library.file);
        }
        const std::vector<std::string> steps = StepsOf(library);
        for (size_t done = result.checks.size() - before; done < steps.size(); ++done) {
            result.checks.push_back(NotReached(libraryGroup, steps[done]));
        }
    }
    return result;
}

}  // namespace tool::doctor
