#include "tool/doctor/checks/ModuleTrialChecks.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/TemporaryFolder.h"
#include "tool/doctor/checks/ModuleFindings.h"
#include "tool/doctor/trial/ModuleTrial.h"

namespace tool::doctor {

namespace {

namespace fs = std::filesystem;

constexpr char loadedCheck[] = "is loaded";
constexpr char enterCheck[] = "is told to enter";
constexpr char entryCheck[] = "enters the bridge";
constexpr char leaveCheck[] = "is told to leave";

// Beside the folder of the programs, in the package as in the build's.
fs::path CheckingBridge() {
    return OwnFolder().parent_path() / "checking" / "VsMsgbus.dll";
}

Checks NothingReached() {
    Checks checks;
    for (const char* const name : {loadedCheck, enterCheck, entryCheck, leaveCheck}) {
        checks.push_back(NotReached(moduleGroup, name));
    }
    return checks;
}

// The checks of one trial of the module, from the steps that it reported.
class ModuleTrialResult {
public:
    ModuleTrialResult(TrialResult trialResult, const Record& trialRecord, const Options& trialOptions)
        : result(std::move(trialResult)), record(trialRecord), options(trialOptions) {}

    Checks Make() const {
        if (result.end.how == ReportedEnd::How::NotStarted) {
            Checks checks = NothingReached();
            checks.front() = Bad(moduleGroup, loadedCheck, Problem::TrialFailed, {SystemText(result.end.code)});
            return checks;
        }
        return {CheckLoaded(), CheckEnter(), CheckEntry(), CheckLeave()};
    }

private:
    const TrialStep* Reached(const std::string& name) const { return name.empty() ? nullptr : result.Find(name); }

    Check EndedIn(const char* check, const std::string& step) const {
        if (result.end.how == ReportedEnd::How::Silent) {
            return Bad(moduleGroup, check, Problem::ModuleHangs, {step, std::to_string(options.waitSeconds)});
        }
        return Bad(moduleGroup, check, Problem::ModuleCrashes, {step, result.HowItEnded()});
    }

    Check CheckLoaded() const {
        for (const char* const name : {loadingBridgeStep, loadingModuleStep}) {
            const TrialStep* const step = result.Find(name);
            if (step == nullptr || !step->code) {
                return EndedIn(loadedCheck, name);
            }
            if (*step->code != ERROR_SUCCESS) {
                const auto code = static_cast<DWORD>(*step->code);
                const std::string file = name == loadingModuleStep ? options.module : Utf8(CheckingBridge());
                return Bad(moduleGroup, loadedCheck, Problem::ModuleNotLoaded,
                           {file, std::to_string(code), SystemText(code)});
            }
        }
        return Good(moduleGroup, loadedCheck, {"with the checking bridge, in a process of its own"});
    }

    Check CheckEnter() const {
        const TrialStep* const step = Reached(options.enter);
        if (step == nullptr) {
            return NotReached(moduleGroup, enterCheck);
        }
        if (!step->code) {
            return EndedIn(enterCheck, step->name);
        }
        const std::string answer = fmt::format("{} answers {}", step->name, *step->code != 0 ? "true" : "false");
        if (*step->code == 0 && record.Products().empty()) {
            return Bad(moduleGroup, enterCheck, Problem::ModuleAnswersFalse,
                       {step->name, "VsMsgbusEntry was not called"});
        }
        return {moduleGroup, enterCheck, *step->code != 0 ? State::Good : State::Note, {answer}};
    }

    Check CheckEntry() const {
        const TrialStep* const step = result.Find(waitingStep);
        if (step != nullptr && !step->code) {
            return EndedIn(entryCheck, "the time in which it enters");
        }
        if (!record.Products().empty()) {
            return Good(moduleGroup, entryCheck);
        }
        if (step == nullptr) {
            return NotReached(moduleGroup, entryCheck);
        }
        const std::string called = options.enter.empty() ? "No function of the module's was called to have it enter."
                                                         : fmt::format("Its function {} was called.", options.enter);
        return Bad(moduleGroup, entryCheck, Problem::ModuleDoesNotEnter, {std::to_string(options.waitSeconds), called});
    }

    Check CheckLeave() const {
        const TrialStep* const step = Reached(options.leave);
        if (step != nullptr && !step->code) {
            return EndedIn(leaveCheck, step->name);
        }
        if (result.Unfinished() == nullptr && (result.end.how == ReportedEnd::How::Silent || result.end.code != 0)) {
            return EndedIn(leaveCheck, "the end of its process");
        }
        if (step == nullptr) {
            return NotReached(moduleGroup, leaveCheck);
        }
        return Good(moduleGroup, leaveCheck,
                    {fmt::format("{} answers {}", step->name, *step->code != 0 ? "true" : "false")});
    }

    const TrialResult result;
    const Record& record;
    const Options& options;
};

std::vector<std::string> ArgumentsOf(const Options& options, const fs::path& recordFile, const fs::path& findingsFile) {
    std::vector<std::string> arguments = {"doctor-module",
                                          "--module",
                                          options.module,
                                          "--checking",
                                          Utf8(CheckingBridge()),
                                          "--record",
                                          Utf8(recordFile),
                                          "--findings",
                                          Utf8(findingsFile),
                                          "--wait",
                                          std::to_string(options.waitSeconds)};
    const auto add = [&](const char* name, const std::string& value) {
        if (!value.empty()) {
            arguments.insert(arguments.end(), {name, value});
        }
    };
    add("--local-machine", options.localMachine);
    add("--enter", options.enter);
    add("--leave", options.leave);
    return arguments;
}

Checks RunModule(const Options& options) {
    // The trial waits for the module as long as the options say; its process is given this much more.
    constexpr std::chrono::seconds margin{2};
    const TemporaryFolder folder;
    const fs::path recordFile = folder.Path() / "record.json";
    const fs::path findingsFile = folder.Path() / "findings.txt";
    TrialResult result = RunTrial(ArgumentsOf(options, recordFile, findingsFile), options.Wait() + margin);
    const Record record(recordFile);
    Checks checks = ModuleTrialResult(std::move(result), record, options).Make();
    if (!record.Products().empty()) {
        Append(checks, CheckModuleProducts(record, ReadFindings(findingsFile), !options.leave.empty(), options));
    }
    return checks;
}

}  // namespace

Checks CheckModuleTrial(const ModuleFileResult& file, const Options& options) {
    Checks checks = NothingReached();
    if (!file.isUsable) {
        return checks;
    }
    if (std::error_code error; !fs::is_regular_file(CheckingBridge(), error)) {
        checks.front() = Bad(moduleGroup, loadedCheck, Problem::CheckingBridgeMissing, {Utf8(CheckingBridge())});
        return checks;
    }
    for (const std::string& function : {options.enter, options.leave}) {
        if (!function.empty() && !std::binary_search(file.exports.begin(), file.exports.end(), function)) {
            checks[1] = Bad(moduleGroup, enterCheck, Problem::ModuleWithoutFunction, {options.module, function});
            return checks;
        }
    }
    Options complete = options;
    complete.enter = options.enter.empty() ? file.OnlyExportEndingIn("Load") : options.enter;
    complete.leave = options.leave.empty() ? file.OnlyExportEndingIn("Unload") : options.leave;
    return RunModule(complete);
}

}  // namespace tool::doctor
