#include "tool/judge/Judge.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <memory>

#include "VsMsgbus/Version.h"
#include "tool/files/WholeFile.h"
#include "tool/judge/Trial.h"
#include "tool/judge/Verdict.h"
#include "tool/process/Environment.h"
#include "tool/text/Utf8.h"

namespace tool::judge {

namespace {

struct Wish {
    std::vector<std::string> modules;
    std::string load;
    std::string unload;
    std::vector<std::string> only;
    std::string stories;
    std::string junit;
    std::string html;
    uint32_t cycles = 1000;
    bool isShort = false;
    bool isJson = false;
    bool wantsList = false;
};

constexpr char footer[] =
    "Examples:\n"
    "  vsmsgbus judge MyModule.dll\n"
    "  vsmsgbus judge --junit judge.xml --html judge.html MyModule.dll\n"
    "  vsmsgbus judge --only \"eight threads\" MyModule.dll\n"
    "  vsmsgbus judge --stories stories MyModule.dll\n"
    "Exit status: 0 nothing was found, 1 a finding, 2 wrong use.";

class JudgeCommand {
public:
    explicit JudgeCommand(const Wish& commandLine) : wish(commandLine) {
        for (const std::string& module : wish.modules) {
            cast.modules.push_back(PathOf(module));
            if (!std::filesystem::is_regular_file(cast.modules.back())) {
                throw std::runtime_error("there is no file " + module);
            }
            heading.modules += (heading.modules.empty() ? "" : " ") + module;
        }
        heading.version =
            fmt::format("{}.{}.{}", VSMSGBUS_VERSION_MAJOR, VSMSGBUS_VERSION_MINOR, VSMSGBUS_VERSION_PATCH);
        cast.isQuiet = true;
        cast.loadFunction = wish.load;
        cast.unloadFunction = wish.unload;
    }

    ExitStatus Run() {
        // In milliseconds: the checking bridge compares masks and interfaces this soon after the last change, and takes
        // a callback for slow after the other time.
        const Environment environment({{L"VSMSGBUS_CHECK_GRACE", L"300"}, {L"VSMSGBUS_CHECK_SLOW", L"2000"}});
        Learn();
        if (wish.wantsList) {
            for (const Trial& trial : trials) {
                fmt::print("{:<60} {}\n", trial.name, trial.purpose);
            }
            return ExitStatus::Right;
        }
        for (size_t i = 0; i < trials.size(); ++i) {
            if (IsWanted(trials[i])) {
                Tell(fmt::format("{} of {}: {}", i + 1, trials.size(), trials[i].name));
                verdicts.push_back(JudgeBy(trials[i]).verdict);
            }
        }
        if (verdicts.empty()) {
            throw std::runtime_error("no trial of that name: see vsmsgbus judge --list");
        }
        return Report();
    }

private:
    bool IsWanted(const Trial& trial) const {
        return wish.only.empty() || std::find(wish.only.begin(), wish.only.end(), trial.name) != wish.only.end();
    }

    // Tells of long work, at most once a second, on standard error.
    void Tell(const std::string& text) const {
        const auto now = std::chrono::steady_clock::now();
        if (now - lastTold > std::chrono::seconds(1)) {
            fmt::print(stderr, "{}\n", text);
            lastTold = now;
        }
    }

    // What was seen while the story was played, and what that comes to.
    struct Judged {
        play::RunResult run;
        Verdict verdict;
    };

    Judged JudgeBy(const Trial& trial) const {
        play::Cast with = cast;
        with.isChecking = trial.isChecking;
        const std::string text = trial.story.dump(4);
        if (!wish.stories.empty()) {
            std::string name = trial.name;
            std::replace(name.begin(), name.end(), ':', '-');
            std::filesystem::create_directories(PathOf(wish.stories));
            WriteWholeFile(PathOf(wish.stories) / PathOf(name + ".json"), text);
        }
        const play::Story story(trial.name, text, {});
        const auto begin = std::chrono::steady_clock::now();
        play::RunResult run = play::Play(story, with, std::nullopt, nullptr);
        const auto taken = std::chrono::steady_clock::now() - begin;
        return {run,
                {.trial = trial,
                 .findings = FindingsOf(trial, run),
                 .milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(taken).count(),
                 .steps = run.steps.size(),
                 .isMet = std::none_of(run.facts.begin(), run.facts.end(),
                                       [](const nlohmann::json& fact) { return fact.contains("unmet"); })}};
    }

    // The first stories tell what there is to try. Where they cannot be played to their end, no other can.
    void Learn() {
        if (!LearnBy(FirstTrial())) {
            return;
        }
        if (!LearnBy(UseTrial(profile))) {
            return;
        }
        const std::vector<Trial> others = MakeTrials(profile, wish.cycles, wish.isShort);
        trials.insert(trials.end(), others.begin(), others.end());
    }

    bool LearnBy(const Trial& trial) {
        auto [run, verdict] = JudgeBy(trial);
        LearnFrom(run);
        if (IsWanted(trial) || run.Worst() != play::Outcome::Passed) {
            verdicts.push_back(std::move(verdict));
        }
        isEnded = run.Worst() != play::Outcome::Passed;
        return !isEnded;
    }

    void LearnFrom(const play::RunResult& run) {
        for (const auto& fact : run.facts) {
            if (fact.contains("product")) {
                profile.products[fact.at("product")] = fact.at("services").get<std::set<std::string>>();
            } else if (fact.contains("load")) {
                profile.leaveFunctions[fact.at("load")] = fact.at("function");
            }
        }
        std::set<std::string>* phase = &profile.enterCalls;
        for (const play::StepResult& step : run.steps) {
            const std::string verb = step.step.at("do");
            phase = verb == "unload" ? &profile.leaveCalls : phase;
            phase->insert(step.functions.begin(), step.functions.end());
            phase = verb == "tell products" ? &profile.useCalls : phase;
        }
    }

    ExitStatus Report() const {
        if (wish.isJson) {
            fmt::print("{}", MakeJson(heading, verdicts));
        } else {
            fmt::print("{}", MakeTable(heading, verdicts));
            if (isEnded) {
                fmt::print("Nothing else was tried: every other story begins in this way.\n");
            }
        }
        if (!wish.junit.empty()) {
            WriteWholeFile(PathOf(wish.junit), MakeJUnit(heading, verdicts));
        }
        if (!wish.html.empty()) {
            WriteWholeFile(PathOf(wish.html), MakePage(heading, verdicts));
        }
        const bool isClean = std::all_of(verdicts.begin(), verdicts.end(),
                                         [](const Verdict& verdict) { return verdict.findings.empty(); });
        return isClean ? ExitStatus::Right : ExitStatus::Finding;
    }

    const Wish& wish;
    play::Cast cast;
    Heading heading;
    Profile profile;
    std::vector<Trial> trials;
    std::vector<Verdict> verdicts;
    bool isEnded = false;
    mutable std::chrono::steady_clock::time_point lastTold = std::chrono::steady_clock::now();
};

}  // namespace

void AddJudge(CLI::App& program, ExitStatus& status) {
    const auto wish = std::make_shared<Wish>();
    CLI::App* const judge = program.add_subcommand(
        "judge", "Plays a fixed set of stories with a module under the checking bridge, and says what it does wrong");
    judge->add_option("modules", wish->modules, "The modules' files")->required();
    judge->add_option("--load", wish->load, "The exported function by which the modules enter");
    judge->add_option("--unload", wish->unload, "The exported function by which the modules leave");
    judge->add_option("--only", wish->only, "Only the story of that name; may be given several times")
        ->expected(1)
        ->take_all();
    judge->add_flag("--list", wish->wantsList, "Only list the stories for this module");
    judge->add_option("--stories", wish->stories, "Write each story to this folder, for vsmsgbus play --checking");
    judge->add_option("--cycles", wish->cycles, "How often the modules enter and leave; 1000 when not given")
        ->check(CLI::PositiveNumber);
    judge->add_flag("--short", wish->isShort, "Have only every eighth call of the agent fail");
    judge->add_option("--junit", wish->junit, "Write the result to this file, as JUnit does");
    judge->add_option("--html", wish->html, "Write the result to this file, as a page for a browser");
    judge->add_flag("--json", wish->isJson, "Print the result as JSON");
    judge->footer(footer);
    judge->callback([wish, &status] { status = JudgeCommand(*wish).Run(); });
}

}  // namespace tool::judge
