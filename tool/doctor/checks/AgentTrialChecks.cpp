#include "tool/doctor/checks/AgentTrialChecks.h"

#include <fmt/format.h>

#include <algorithm>

#include "agent/ny_agent.h"
#include "tool/doctor/AgentFunctions.h"
#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/trial/AgentTrial.h"

namespace tool::doctor {

namespace {

// Some steps of the trial, as one check. `problem` makes the check of a step with a code.
struct TrialRow {
    std::string name;
    std::vector<std::string> steps;
    std::function<Check(const TrialRow& row, const TrialStep& step)> problem;
};

std::string CodeText(const TrialStep& step) {
    return fmt::format("{}: {}", step.name, *step.code);
}

Check LoadingProblem(const TrialRow& row, const TrialStep& step) {
    const auto code = static_cast<DWORD>(*step.code);
    return Bad(trialGroup, row.name, Problem::LibraryNotLoaded, {row.name, std::to_string(code), SystemText(code)},
               {CodeText(step)});
}

Check ClientProblem(const TrialRow& row, const TrialStep& step) {
    return Bad(trialGroup, row.name, Problem::ClientRefused, {step.name, std::to_string(*step.code)}, {CodeText(step)});
}

std::vector<TrialRow> RowsOf(const std::string& product) {
    std::vector<TrialRow> rows;
    for (const AgentLibrary& library : AgentLibraries()) {
        rows.push_back({fmt::format("{} is loaded", library.file), {LoadingStep(library.file)}, &LoadingProblem});
    }
    rows.push_back({"a client is created",
                    {"ny_client_handler_create", "ny_client_handler_set_msgbus_passphrase_callback",
                     "ny_client_handler_set_thread_option", "ny_client_handler_set_logger_callback"},
                    &ClientProblem});
    rows.push_back(
        {"the client is started", {"ny_client_handler_start", "ny_client_handler_get_msgbus"}, &ClientProblem});
    for (const AgentService& service : agentServices) {
        const auto refused = [&service, product](const TrialRow& row, const TrialStep& step) {
            const bool isKept = step.name == service.withdrawing;
            return Bad(trialGroup, row.name, isKept ? Problem::ProductKept : Problem::ProductRefused,
                       {product, service.name, step.name, std::to_string(*step.code)}, {CodeText(step)});
        };
        rows.push_back({fmt::format("\"{}\" is registered for {} and withdrawn", product, service.name),
                        {service.registering, service.withdrawing},
                        refused});
    }
    rows.push_back({"the client is stopped and released",
                    {"ny_client_handler_stop", "ny_client_handler_release"},
                    &ClientProblem});
    rows.push_back({"the libraries are unloaded, the process ends", {"unloading"}, &ClientProblem});
    return rows;
}

// The bridge does not look at the answers of these.
bool IsSetting(const std::string& step) {
    return step.starts_with("ny_client_handler_set_") || step == "ny_client_handler_get_msgbus";
}

class Trial {
public:
    Trial(TrialResult trialResult, const Options& trialOptions)
        : result(std::move(trialResult)), options(trialOptions) {}

    Checks Make() const {
        Checks checks;
        const std::vector<TrialRow> rows = RowsOf(options.TrialProduct());
        for (const TrialRow& row : rows) {
            checks.push_back(CheckRow(row));
        }
        const bool isEndBad = result.Unfinished() == nullptr && HasEndedBadly();
        if (isEndBad) {
            checks.back() = EndedIn(rows.back(), "its end");
        }
        if (result.end.how == ReportedEnd::How::NotStarted) {
            checks.front() = Bad(trialGroup, rows.front().name, Problem::TrialFailed, {SystemText(result.end.code)});
        }
        return checks;
    }

private:
    bool HasEndedBadly() const {
        return result.end.how == ReportedEnd::How::Silent ||
               (result.end.how == ReportedEnd::How::Ended && result.end.code != 0);
    }

    Check EndedIn(const TrialRow& row, const std::string& step) const {
        if (result.end.how == ReportedEnd::How::Silent) {
            return Bad(trialGroup, row.name, Problem::AgentHangs, {step, std::to_string(options.waitSeconds)});
        }
        return Bad(trialGroup, row.name, Problem::AgentCrashes, {step, result.HowItEnded(), "ny_client.dll"});
    }

    Check CheckRow(const TrialRow& row) const {
        std::vector<std::string> details;
        std::vector<std::string> codes;
        for (const std::string& name : row.steps) {
            const TrialStep* const step = result.Find(name);
            if (step == nullptr) {
                continue;
            }
            details.insert(details.end(), step->texts.begin(), step->texts.end());
            if (!step->code) {
                return EndedIn(row, name);
            }
            if (*step->code != NY_OK && !IsSetting(name)) {
                Check bad = row.problem(row, *step);
                bad.details.insert(bad.details.end(), details.begin(), details.end());
                return bad;
            }
            codes.push_back(CodeText(*step));
        }
        if (codes.empty()) {
            return NotReached(trialGroup, row.name);
        }
        details.insert(details.begin(), fmt::format("{}", fmt::join(codes, ", ")));
        return Good(trialGroup, row.name, std::move(details));
    }

    const TrialResult result;
    const Options& options;
};

std::vector<std::string> ArgumentsOf(const std::vector<std::string>& libraries, const Options& options) {
    std::vector<std::string> arguments = {"doctor-agent", "--product", options.TrialProduct()};
    if (!options.localMachine.empty()) {
        arguments.insert(arguments.end(), {"--local-machine", options.localMachine});
    }
    for (const std::string& library : libraries) {
        arguments.insert(arguments.end(), {"--library", library});
    }
    return arguments;
}

}  // namespace

Checks CheckAgentTrial(const std::vector<std::string>& usableLibraries, const Options& options) {
    if (std::find(usableLibraries.begin(), usableLibraries.end(), "ny_client.dll") == usableLibraries.end()) {
        Checks checks;
        for (const TrialRow& row : RowsOf(options.TrialProduct())) {
            checks.push_back(NotReached(trialGroup, row.name));
        }
        return checks;
    }
    return Trial(RunTrial(ArgumentsOf(usableLibraries, options), options.Wait()), options).Make();
}

}  // namespace tool::doctor
