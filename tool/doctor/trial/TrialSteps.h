// The steps of a trial, as the process that tries reports them and as the doctor reads them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tool/process/ReportedProcess.h"

namespace tool::doctor {

// One step of a trial.
struct TrialStep {
    std::string name;
    std::optional<int64_t> code;     // none for a step that has not ended
    std::vector<std::string> texts;  // what was said meanwhile
};

// Used in the process that tries: reports each step before it is made, so that the doctor knows the step of a crash.
class TrialSteps {
public:
    explicit TrialSteps(const ReportWriter& reportWriter) : writer(reportWriter) {}

    void Begin(const std::string& name) const;
    void Say(const std::string& text) const;  // of the step that was begun; bytes that are no UTF-8 are replaced
    void End(int64_t code) const;

    // Runs `step()`, which answers a code, as the step of that name.
    template <class Step>
    auto Make(const std::string& name, const Step& step) const {
        Begin(name);
        const auto code = step();
        End(static_cast<int64_t>(code));
        return code;
    }

private:
    const ReportWriter& writer;
};

struct TrialResult {
    std::vector<TrialStep> steps;
    ReportedEnd end;

    // Null when the step was never begun.
    const TrialStep* Find(const std::string& name) const;
    // The step in which the process ended or was ended too early; null when all steps have ended.
    const TrialStep* Unfinished() const;
    // "exception 0xC0000005 (access violation)", ...
    std::string HowItEnded() const;
};

// Runs this program once more with those arguments, and reads the steps that it reports.
TrialResult RunTrial(const std::vector<std::string>& arguments, std::chrono::milliseconds patience);

}  // namespace tool::doctor
