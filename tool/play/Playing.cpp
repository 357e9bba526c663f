#include "tool/play/Playing.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>
#include <fstream>

#include "tool/play/FindingsFile.h"
#include "tool/process/ChildProcess.h"
#include "tool/process/Environment.h"
#include "tool/process/ThisProgram.h"
#include "tool/text/Utf8.h"

namespace tool::play {

namespace {

using Json = nlohmann::json;
using std::chrono::milliseconds;

// How much longer than its limit a step may take until it counts as hung: the player ends its waits itself.
constexpr milliseconds grace{5000};
// How long the process may take to begin, and to end behind the last step: the bridge waits 15 s at most.
constexpr milliseconds beginLimit{60000};
constexpr milliseconds endLimit{25000};

Json MakePlan(const Story& story, const Cast& cast, const Json& steps) {
    const auto either = [](const std::string& first, const std::string& second) {
        return first.empty() ? second : first;
    };
    Json modules = Json::array();
    for (const auto& module : cast.modules) {
        modules.push_back(Utf8(std::filesystem::absolute(module)));
    }
    // As the package has them, and the build.
    const auto bridge = cast.isChecking ? FindDll(L"VsMsgbus.dll", {L"../checking"}) : FindDll(L"VsMsgbus.dll", {L"."});
    return {{"bridge", Utf8(bridge)},
            {"simulator", Utf8(FindDll(L"ny_simulator.dll", {L"../agent/lib", L"."}))},
            {"setup", Utf8(FindDll(L"ny_setup.dll", {L"../agent/lib", L"."}))},
            {"modules", std::move(modules)},
            {"product", either(cast.product, story.Product())},
            {"load", either(cast.loadFunction, story.LoadFunction())},
            {"unload", either(cast.unloadFunction, story.UnloadFunction())},
            {"steps", steps}};
}

std::string DescribeStatus(uint32_t status) {
    switch (status) {
        case EXCEPTION_ACCESS_VIOLATION: return "access violation, 0xC0000005";
        case EXCEPTION_STACK_OVERFLOW: return "stack overflow, 0xC00000FD";
        case EXCEPTION_INT_DIVIDE_BY_ZERO: return "division by zero, 0xC0000094";
        case EXCEPTION_ILLEGAL_INSTRUCTION: return "illegal instruction, 0xC000001D";
        case 0xC0000374: return "broken heap, 0xC0000374";
        case 0xE06D7363: return "an exception that nobody caught, 0xE06D7363";
        case 0x20474343: return "an exception that nobody caught, 0x20474343";
        case 3: return "status 3, as after abort()";
        default: return fmt::format("status {0}, 0x{0:08X}", status);
    }
}

class Run {
public:
    Run(const Story& story, const Cast& playedCast, std::optional<uint32_t> seed, Audience* listener)
        : cast(playedCast), audience(listener) {
        result.seed = seed;
        const Json steps = story.InOrder(seed);
        for (const Json& step : steps) {
            result.steps.emplace_back().step = step;
        }
        plan = MakePlan(story, cast, steps);
    }

    RunResult Play() {
        FindingsFile findings;
        const Environment environment(Variables(findings));
        ChildProcess child({"player"}, plan.dump(), cast.isQuiet);
        FollowSteps(child);
        LookAtEnd(child);
        result.findings = findings.Read();
        LookAtFindings();
        return std::move(result);
    }

private:
    Environment::Variables Variables(const FindingsFile& findings) const {
        Environment::Variables variables{{L"VSMSGBUS_CHECK_FILE", findings.Path().wstring()}};
        if (!cast.trace.empty()) {
            variables.emplace_back(L"VSMSGBUS_TRACE", std::filesystem::absolute(cast.trace).wstring());
        }
        return variables;
    }

    StepResult* Current() { return hasBegun ? &result.steps[current] : nullptr; }

    milliseconds Patience() {
        return !hasBegun ? beginLimit : isOver ? endLimit : milliseconds(Current()->step.at("within")) + grace;
    }

    // Until the story is over, or the process has ended or hangs.
    void FollowSteps(ChildProcess& child) {
        std::string line;
        for (;;) {
            const auto read = child.NextLine(Patience(), line);
            if (read == ChildProcess::Read::End) {
                return;
            }
            if (read == ChildProcess::Read::Timeout) {
                Hang(child);
                return;
            }
            Take(Json::parse(line));
        }
    }

    void Take(const Json& event) {
        const std::string name = event.at("event");
        if (name == "begin") {
            Begin(event.at("step"));
        } else if (name == "line") {
            Hear({event.at("who"), event.at("text"), event.value("isCall", false)});
        } else if (name == "end") {
            Current()->milliseconds = event.at("milliseconds");
            End(!event.contains("failure")     ? Outcome::Passed
                : event.value("isHung", false) ? Outcome::Hung
                                               : Outcome::Failed,
                event.value("failure", ""));
        } else if (name == "calls") {
            Current()->functions = event.at("functions").get<std::vector<std::string>>();
        } else if (name == "fact") {
            result.facts.push_back(event);
        } else if (name == "no findings") {
            isSilenceExpected = true;
        } else if (name == "crash") {
            crash = fmt::format("{} in {} at offset 0x{:x}, on thread {}", DescribeStatus(event.at("code")),
                                event.at("file").get<std::string>(), event.at("offset").get<uint64_t>(),
                                event.at("thread").get<uint32_t>());
        } else if (name == "over") {
            isOver = true;
        }
    }

    void Hear(const Line& line) {
        if (StepResult* const step = Current()) {
            step->lines.push_back(line);
        }
        if (audience != nullptr) {
            audience->OnLine(line);
        }
    }

    void End(Outcome outcome, const std::string& failure) {
        isInStep = false;
        Current()->outcome = outcome;
        Current()->failure = failure;
        if (audience != nullptr) {
            audience->OnEnd(*Current());
        }
    }

    void Begin(size_t index) {
        current = index;
        hasBegun = true;
        isInStep = true;
        stepBegin = std::chrono::steady_clock::now();
        if (audience != nullptr) {
            audience->OnBegin(current, *Current());
        }
    }

    // Notes how the process ended: in the step that was under way; or in the one that was about to begin, when a
    // request beside the story brought the process down; or behind the last step.
    void Conclude(Outcome outcome, const std::string& failure) {
        if (hasBegun && !isInStep && !isOver && current + 1 < result.steps.size()) {
            Begin(current + 1);
        }
        if (isInStep) {
            Current()->milliseconds =
                std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - stepBegin).count();
            End(outcome, failure);
        } else if (result.end == Outcome::NotPlayed || result.end == Outcome::Passed) {
            result.end = outcome;
            result.endFailure = failure;
        }
    }

    void Hang(const ChildProcess& child) {
        const std::string limit = std::to_string(Patience().count());
        child.Terminate();
        if (!hasBegun) {
            throw std::runtime_error("the player's process did not begin within " + limit + " ms");
        }
        Conclude(Outcome::Hung, isInStep ? "nothing came back within " + limit + " ms; the process was ended"
                                         : "the process did not end within " + limit + " ms");
        isHung = true;
    }

    void LookAtEnd(const ChildProcess& child) {
        if (isHung) {
            return;
        }
        const auto status = child.WaitForExit(isOver ? endLimit : grace);
        if (!crash.empty()) {
            Conclude(Outcome::Crashed, "the process crashed: " + crash);
        } else if (!status) {
            Hang(child);
        } else if (!hasBegun && !(isOver && *status == 0)) {
            throw std::runtime_error("the player's process could not begin: " + DescribeStatus(*status));
        } else if (!isOver || *status != 0) {
            Conclude(Outcome::Crashed, "the process ended with " + DescribeStatus(*status));
        } else {
            Conclude(Outcome::Passed, "");
        }
    }

    // Looks at findings that came behind the last step: earlier ones have failed their step.
    void LookAtFindings() {
        const auto isFinding = [](const std::string& line) { return line.find("VsMsgbus check [") == 0; };
        if (isSilenceExpected && result.Worst() == Outcome::Passed &&
            std::any_of(result.findings.begin(), result.findings.end(), isFinding)) {
            result.end = Outcome::Failed;
            result.endFailure = "there were to be no findings until the process has ended, and there is " +
                                *std::find_if(result.findings.begin(), result.findings.end(), isFinding);
        }
    }

    const Cast& cast;
    Audience* const audience;
    Json plan;
    RunResult result;
    size_t current = 0;
    std::chrono::steady_clock::time_point stepBegin;
    bool hasBegun = false;
    bool isInStep = false;
    bool isOver = false;
    bool isHung = false;
    bool isSilenceExpected = false;
    std::string crash;
};

}  // namespace

const char* NameOf(Outcome outcome) {
    switch (outcome) {
        case Outcome::Passed: return "passed";
        case Outcome::Failed: return "failed";
        case Outcome::Crashed: return "crashed";
        case Outcome::Hung: return "hung";
        case Outcome::NotPlayed: return "not played";
    }
    return "?";
}

Outcome RunResult::Worst() const {
    for (const StepResult& step : steps) {
        if (step.outcome != Outcome::Passed && step.outcome != Outcome::NotPlayed) {
            return step.outcome;
        }
    }
    return end == Outcome::NotPlayed ? Outcome::Passed : end;
}

std::string RunResult::Failure() const {
    for (size_t i = 0; i < steps.size(); ++i) {
        const StepResult& step = steps[i];
        if (step.outcome != Outcome::Passed && step.outcome != Outcome::NotPlayed) {
            return fmt::format("step {} \"{}\" of line {} {}: {}", i + 1, step.step.at("do").get<std::string>(),
                               step.step.at("line").get<int>(), NameOf(step.outcome), step.failure);
        }
    }
    return end == Outcome::Passed || end == Outcome::NotPlayed ? std::string() : "behind the last step: " + endFailure;
}

RunResult Play(const Story& story, const Cast& cast, std::optional<uint32_t> seed, Audience* audience) {
    return Run(story, cast, seed, audience).Play();
}

}  // namespace tool::play
