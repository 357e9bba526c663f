#include "tool/play/Reports.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>

#include "tool/output/Wrap.h"
#include "tool/text/Xml.h"

namespace tool::play {

namespace {

using OrderedJson = nlohmann::ordered_json;

constexpr size_t columns = 118;

uint16_t ColourOf(std::string_view who) {
    if (who == "agent") {
        return FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_INTENSITY;
    }
    if (who == "bridge" || who == "log") {
        return FOREGROUND_GREEN | FOREGROUND_BLUE | FOREGROUND_INTENSITY;
    }
    return who == "module" ? FOREGROUND_GREEN | FOREGROUND_INTENSITY
                           : FOREGROUND_RED | FOREGROUND_BLUE | FOREGROUND_INTENSITY;
}

uint16_t ColourOf(Outcome outcome) {
    return outcome == Outcome::Passed ? FOREGROUND_GREEN | FOREGROUND_INTENSITY : FOREGROUND_RED | FOREGROUND_INTENSITY;
}

// The verb with what the step names, so that steps can be told apart: "install 5.7.0".
std::string Title(const nlohmann::json& step) {
    std::string title = step.at("do");
    for (const char* const member : {"version", "function", "task", "name", "service", "request", "rule", "library"}) {
        if (step.contains(member)) {
            title += ' ' + step.at(member).get<std::string>();
        }
    }
    return title;
}

std::string Seed(const RunResult& run) {
    return run.seed ? fmt::format(", seed {}", *run.seed) : "";
}

// Empty when nothing has failed.
std::string FailureElement(Outcome outcome, const std::string& failure) {
    return failure.empty() ? ""
                           : fmt::format("<failure type=\"{}\" message=\"{}\"/>", NameOf(outcome), EscapeXml(failure));
}

size_t CountSteps(const RunResult& run, Outcome outcome) {
    return static_cast<size_t>(std::count_if(run.steps.begin(), run.steps.end(),
                                             [&](const StepResult& step) { return step.outcome == outcome; }));
}

}  // namespace

void Printer::OnBegin(size_t index, const StepResult& step) {
    Say(fmt::format("{:>3}. {} (line {})", index + 1, Title(step.step), step.step.at("line").get<int>()),
        Outcome::NotPlayed);
    if (step.step.contains("note")) {
        Say("     " + step.step.at("note").get<std::string>(), Outcome::NotPlayed);
    }
}

void Printer::OnLine(const Line& line) {
    if (line.isCall && !showsCalls) {
        return;
    }
    const std::string label = fmt::format("{:>11}: ", line.who);
    terminal.Print(label, ColourOf(line.who));
    const auto lines = Wrap(line.text, columns - label.size());
    fmt::print("{}\n", fmt::join(lines, "\n" + std::string(label.size(), ' ')));
    std::fflush(stdout);
}

void Printer::OnEnd(const StepResult& step) {
    Say(fmt::format("     {}{}, {} ms", NameOf(step.outcome), step.failure.empty() ? "" : ": " + step.failure,
                    step.milliseconds),
        step.outcome);
}

void Printer::OnOver(const RunResult& run) {
    if (!run.endFailure.empty()) {
        Say("behind the last step: " + run.endFailure, run.end);
    }
    Say(fmt::format(
            "{}{}: {} of {} steps passed{}", NameOf(run.Worst()), Seed(run), CountSteps(run, Outcome::Passed),
            run.steps.size(),
            run.findings.empty() ? "" : fmt::format(", the checking bridge told {} lines", run.findings.size())),
        run.Worst());
}

void Printer::Say(const std::string& text, Outcome outcome) {
    const uint16_t plain = FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_BLUE;
    for (const std::string& line : Wrap(text, columns)) {
        terminal.Print(line + '\n', outcome == Outcome::NotPlayed ? plain : ColourOf(outcome));
    }
    std::fflush(stdout);
}

OrderedJson MakeJson(const std::string& story, const std::vector<RunResult>& runs) {
    OrderedJson all = {{"story", story}, {"passed", true}, {"runs", OrderedJson::array()}};
    for (const RunResult& run : runs) {
        OrderedJson one;
        one["outcome"] = NameOf(run.Worst());
        if (run.seed) {
            one["seed"] = *run.seed;
        }
        one["failure"] = run.Failure();
        one["findings"] = run.findings;
        one["steps"] = OrderedJson::array();
        for (const StepResult& step : run.steps) {
            OrderedJson lines = OrderedJson::array();
            for (const Line& line : step.lines) {
                lines.push_back({{"who", line.who}, {"text", line.text}});
            }
            one["steps"].push_back({{"do", step.step.at("do")},
                                    {"line", step.step.at("line")},
                                    {"outcome", NameOf(step.outcome)},
                                    {"milliseconds", step.milliseconds},
                                    {"failure", step.failure},
                                    {"lines", std::move(lines)}});
        }
        all["passed"] = all["passed"].get<bool>() && run.Worst() == Outcome::Passed;
        all["runs"].push_back(std::move(one));
    }
    return all;
}

std::string MakeJUnit(const std::string& story, const std::vector<RunResult>& runs) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
    for (size_t i = 0; i < runs.size(); ++i) {
        const RunResult& run = runs[i];
        const bool hasBadEnd = !run.endFailure.empty();
        const size_t failed = run.steps.size() - CountSteps(run, Outcome::Passed) - CountSteps(run, Outcome::NotPlayed);
        xml += fmt::format("  <testsuite name=\"{}\" tests=\"{}\" failures=\"{}\" skipped=\"{}\">\n",
                           EscapeXml(fmt::format("{}, playing {}{}", story, i + 1, Seed(run))), run.steps.size() + 1,
                           failed + (hasBadEnd ? 1 : 0), CountSteps(run, Outcome::NotPlayed));
        const auto add = [&](const std::string& name, int64_t milliseconds, const std::string& inside) {
            xml += fmt::format("    <testcase classname=\"{}\" name=\"{}\" time=\"{:.3f}\"{}\n", EscapeXml(story),
                               EscapeXml(name), static_cast<double>(milliseconds) / 1000,
                               inside.empty() ? "/>" : ">" + inside + "</testcase>");
        };
        for (size_t index = 0; index < run.steps.size(); ++index) {
            const StepResult& step = run.steps[index];
            add(fmt::format("{} {} (line {})", index + 1, Title(step.step), step.step.at("line").get<int>()),
                step.milliseconds,
                step.outcome == Outcome::NotPlayed ? "<skipped/>" : FailureElement(step.outcome, step.failure));
        }
        add("the end of the process", 0, FailureElement(run.end, run.endFailure));
        xml += "  </testsuite>\n";
    }
    return xml + "</testsuites>\n";
}

}  // namespace tool::play
