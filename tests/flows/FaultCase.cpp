#include "flows/FaultCase.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string_view>

#include "support/AnsweredCalls.h"
#include "support/LackingExport.h"

namespace {

// Codes that only the faults answer.
constexpr int32_t CodeOf(FaultCase::Mode mode) {
    return mode == FaultCase::Mode::FromThenOn ? -4242 : 4242;
}
constexpr std::string_view accessorPrefix = "ny_task.";

bool IsCalled(const std::vector<std::string>& calls, const std::string& function) {
    return std::find(calls.begin(), calls.end(), function) != calls.end();
}

void NameCode(std::string& line, FaultCase::Mode mode) {
    const std::string code = std::to_string(CodeOf(mode));
    for (size_t place = line.find(code); place != std::string::npos; place = line.find(code, place)) {
        line.replace(place, code.size(), "<code>");
    }
}

void NoteDifference(std::vector<std::string>& transcript, const std::vector<std::string>& again,
                    const std::vector<std::string>& good) {
    if (again != good) {
        transcript.emplace_back("AGAIN:");
        transcript.insert(transcript.end(), again.begin(), again.end());
    }
}

// The hook that has the agent answer the code, and sees whether it did.
class AnsweredFault {
public:
    explicit AnsweredFault(const FaultCase& faultCase) : fault(faultCase) {}

    FlowHook Hook() {
        return {.install = [this] { Install(); }, .remove = [this] { Remove(); }, .again = true};
    }
    bool HasStruck() const { return hasStruck; }

private:
    void Install() const {
        const auto mode = fault.mode == FaultCase::Mode::Once ? NY_SIM_ONCE : NY_SIM_FROM_THEN_ON;
        ny_sim_fail_call(fault.function.c_str(), fault.nth, CodeOf(fault.mode), mode);
    }
    void Remove() {
        ny_sim_clear_faults();
        hasStruck = IsCalled(AnsweredCalls(), fault.function + " " + std::to_string(CodeOf(fault.mode)));
    }

    const FaultCase& fault;
    bool hasStruck = false;
};

constexpr char notStruck[] = "NOT SEEN: the fault";

}  // namespace

std::string FaultCase::Name() const {
    switch (mode) {
        case Mode::Once: return "once " + function + " " + std::to_string(nth);
        case Mode::FromThenOn: return "from-then-on " + function + " " + std::to_string(nth);
        default: return "missing " + function;
    }
}

std::vector<FaultCase> CasesOf(const std::vector<std::string>& calls) {
    std::map<std::string, uint32_t> counts;
    std::vector<FaultCase> cases;
    for (const std::string& function : calls) {
        const uint32_t nth = ++counts[function];
        cases.push_back({FaultCase::Mode::Once, function, nth});
        cases.push_back({FaultCase::Mode::FromThenOn, function, nth});
    }
    // Behind the others, which may share a session of the bridge.
    for (const auto& [function, count] : counts) {
        cases.push_back({FaultCase::Mode::Missing, function});
    }
    return cases;
}

FaultCases::FaultCases(FlowWorld& flowWorld, const FlowKind& flowKind, bool isEachAlone)
    : world(flowWorld),
      kind(flowKind),
      isAlone(isEachAlone || !flowKind.canRunAgain),
      good(RunFlow(flowWorld, flowKind, FlowHook{.again = true})) {}

std::vector<std::string> FaultCases::Run(const FaultCase& fault) {
    std::vector<std::string> transcript;
    if (fault.mode == FaultCase::Mode::Missing) {
        End();
        transcript = RunMissing(fault);
    } else {
        transcript = isAlone ? RunAlone(fault) : RunShared(fault);
    }
    for (std::string& line : transcript) {
        NameCode(line, fault.mode);
    }
    return transcript;
}

std::vector<std::string> FaultCases::End() {
    std::vector<std::string> left;
    if (shared) {
        NoteDifference(left, shared->End(), AfterRun());
        shared.reset();
    }
    return left;
}

// The good transcript from where CleanUp begins.
std::vector<std::string> FaultCases::AfterRun() const {
    const auto later = std::find(good.transcript.begin(), good.transcript.end(), "later:");
    return {later + 1, good.transcript.end()};
}

std::vector<std::string> FaultCases::RunAlone(const FaultCase& fault) {
    AnsweredFault answered(fault);
    FlowOutcome outcome = RunFlow(world, kind, answered.Hook());
    if (!answered.HasStruck()) {
        outcome.transcript.emplace_back(notStruck);
    }
    if (kind.canRunAgain) {
        NoteDifference(outcome.transcript, outcome.again, good.again);
    } else {
        NoteDifference(outcome.transcript, RunFlow(world, kind).transcript, good.transcript);
    }
    return outcome.transcript;
}

std::vector<std::string> FaultCases::RunShared(const FaultCase& fault) {
    if (!shared) {
        shared.emplace(world, kind);
        // From now on all libraries are loaded that the flow needs.
        shared->Run();
    }
    const size_t before = ny_sim_live_handles(NY_SIM_ANY);
    const std::string standing = FlowWorld::LeftWithTheAgent();
    AnsweredFault answered(fault);
    std::vector<std::string> transcript = shared->Prepared();
    Append(transcript, shared->Run(answered.Hook()));
    const std::string left = FlowWorld::LeftWithTheAgent();
    const bool hasKept = ny_sim_live_handles(NY_SIM_ANY) != before;
    const std::vector<std::string> again = shared->Run();
    transcript.emplace_back("later:");
    if (hasKept) {
        // How many references it kept, and on what it hands out again and again, only its end tells.
        Append(transcript, shared->End());
        shared.reset();
    } else {
        Append(transcript, AfterRun());
    }
    if (!answered.HasStruck()) {
        transcript.emplace_back(notStruck);
    }
    if (left != standing) {
        transcript.push_back("LEFT: not as before:" + left);
    }
    NoteDifference(transcript, again, good.again);
    return transcript;
}

// Runs the flow with a function or an accessor that the agent lacks. A function that Prepare needs is missing from the
// second agent only, to which one flow upgrades.
std::vector<std::string> FaultCases::RunMissing(const FaultCase& fault) {
    FlowOutcome outcome;
    if (fault.function.starts_with(accessorPrefix)) {
        world.lackingAccessor = fault.function.substr(accessorPrefix.size());
        outcome = RunFlow(world, kind);
        world.lackingAccessor.clear();
    } else {
        std::vector<std::filesystem::path> folders = {world.SecondFolder()};
        if (!IsCalled(good.prepareCalls, fault.function)) {
            folders.push_back(world.FirstFolder());
        }
        const LackingExport lacking(folders, fault.function);
        outcome = RunFlow(world, kind);
    }
    if (IsCalled(outcome.calls, fault.function)) {
        outcome.transcript.emplace_back(notStruck);
    }
    NoteDifference(outcome.transcript, RunFlow(world, kind).transcript, good.transcript);
    return outcome.transcript;
}
