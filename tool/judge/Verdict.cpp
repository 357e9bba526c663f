#include "tool/judge/Verdict.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "tool/text/Xml.h"

namespace tool::judge {

namespace {

using OrderedJson = nlohmann::ordered_json;

size_t CountFindings(const std::vector<Verdict>& verdicts) {
    size_t count = 0;
    for (const Verdict& verdict : verdicts) {
        count += verdict.findings.size();
    }
    return count;
}

std::string Summary(const std::vector<Verdict>& verdicts) {
    const auto count = [&](std::string_view word) {
        return std::count_if(verdicts.begin(), verdicts.end(),
                             [&](const Verdict& verdict) { return WordFor(verdict) == word; });
    };
    return fmt::format("{} of {} passed, {} findings{}", count("passed"), verdicts.size(), CountFindings(verdicts),
                       count("not met") == 0 ? "" : fmt::format(", {} not met", count("not met")));
}

std::string Again(const Heading& heading, const Verdict& verdict) {
    return fmt::format("vsmsgbus judge --only \"{}\" {}", verdict.trial.name, heading.modules);
}

// The rule that the first failed step stands for.
const char* RuleOfFailure(const play::RunResult& run) {
    for (const play::StepResult& step : run.steps) {
        if (step.outcome == play::Outcome::Failed) {
            const std::string verb = step.step.at("do");
            return verb == "cycle" ? "LEAK" : verb == "expect nothing left" ? "LEFT-BEHIND" : "EXPECTATION";
        }
    }
    return "EXPECTATION";
}

// A finding without the thread and the place at its end: where it is the same one again.
std::string Essence(const Finding& finding) {
    return finding.rule + finding.what.substr(0, finding.what.rfind(" (thread"));
}

// Notes for each finding whether an earlier story had it: then its name.
class Earlier {
public:
    // Empty for the first time.
    std::string Of(const Finding& finding, const std::string& trial) {
        const auto [found, isNew] = firsts.try_emplace(Essence(finding), trial);
        return isNew || found->second == trial ? std::string() : found->second;
    }

private:
    std::map<std::string, std::string> firsts;
};

// "VsMsgbus check [RULE] PRODUCT: what ..."; nothing for notes.
bool ReadFinding(std::string_view line, Finding& finding) {
    constexpr std::string_view begin = "VsMsgbus check [";
    const size_t end = line.find("] ");
    if (!line.starts_with(begin) || end == std::string_view::npos) {
        return false;
    }
    finding = {std::string(line.substr(begin.size(), end - begin.size())), std::string(line.substr(end + 2))};
    return true;
}

}  // namespace

const char* WordFor(const Verdict& verdict) {
    return !verdict.findings.empty() ? "FINDING" : verdict.isMet ? "passed" : "not met";
}

std::vector<Finding> FindingsOf(const Trial& trial, const play::RunResult& run) {
    std::vector<Finding> findings;
    switch (run.Worst()) {
        case play::Outcome::Crashed: findings.push_back({"CRASH", run.Failure()}); break;
        case play::Outcome::Hung: findings.push_back({"HANG", run.Failure()}); break;
        case play::Outcome::Failed: findings.push_back({RuleOfFailure(run), run.Failure()}); break;
        case play::Outcome::Passed:
        case play::Outcome::NotPlayed: break;
    }
    for (const std::string& line : run.findings) {
        Finding finding;
        if (ReadFinding(line, finding) && trial.expectedRules.count(finding.rule) == 0) {
            findings.push_back(std::move(finding));
        }
    }
    return findings;
}

std::string MakeTable(const Heading& heading, const std::vector<Verdict>& verdicts) {
    std::string table;
    Earlier earlier;
    for (const Verdict& verdict : verdicts) {
        table += fmt::format("{:<8}{:>7} ms  {}\n", WordFor(verdict), verdict.milliseconds, verdict.trial.name);
        for (const Finding& finding : verdict.findings) {
            const std::string first = earlier.Of(finding, verdict.trial.name);
            table += fmt::format("                    [{}] {}\n", finding.rule,
                                 first.empty() ? finding.what : "as in \"" + first + '"');
        }
        if (!verdict.findings.empty()) {
            table += fmt::format("                    again: {}\n", Again(heading, verdict));
        }
    }
    return table + Summary(verdicts) + '\n';
}

std::string MakeJson(const Heading& heading, const std::vector<Verdict>& verdicts) {
    OrderedJson all = {{"modules", heading.modules},
                       {"version", heading.version},
                       {"findings", CountFindings(verdicts)},
                       {"trials", OrderedJson::array()}};
    for (const Verdict& verdict : verdicts) {
        OrderedJson findings = OrderedJson::array();
        for (const Finding& finding : verdict.findings) {
            findings.push_back({{"rule", finding.rule}, {"what", finding.what}});
        }
        all["trials"].push_back({{"name", verdict.trial.name},
                                 {"purpose", verdict.trial.purpose},
                                 {"outcome", WordFor(verdict)},
                                 {"milliseconds", verdict.milliseconds},
                                 {"steps", verdict.steps},
                                 {"findings", std::move(findings)},
                                 {"again", Again(heading, verdict)}});
    }
    return all.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + '\n';
}

std::string MakeJUnit(const Heading& heading, const std::vector<Verdict>& verdicts) {
    const auto failed = std::count_if(verdicts.begin(), verdicts.end(),
                                      [](const Verdict& verdict) { return !verdict.findings.empty(); });
    std::string xml = fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n"
        "  <testsuite name=\"{}\" tests=\"{}\" failures=\"{}\">\n",
        EscapeXml("vsmsgbus judge " + heading.modules), verdicts.size(), failed);
    for (const Verdict& verdict : verdicts) {
        xml += fmt::format("    <testcase classname=\"judge\" name=\"{}\" time=\"{:.3f}\"",
                           EscapeXml(verdict.trial.name), static_cast<double>(verdict.milliseconds) / 1000);
        if (verdict.findings.empty()) {
            xml += verdict.isMet ? "/>\n" : "><skipped/></testcase>\n";
            continue;
        }
        std::string text;
        for (const Finding& finding : verdict.findings) {
            text += fmt::format("[{}] {}\n", finding.rule, finding.what);
        }
        xml += fmt::format(">\n      <failure type=\"{}\" message=\"{}\">{}</failure>\n    </testcase>\n",
                           EscapeXml(verdict.findings.front().rule), EscapeXml(verdict.findings.front().what),
                           EscapeXml(text + Again(heading, verdict)));
    }
    return xml + "  </testsuite>\n</testsuites>\n";
}

std::string MakePage(const Heading& heading, const std::vector<Verdict>& verdicts) {
    std::string rows;
    Earlier earlier;
    for (const Verdict& verdict : verdicts) {
        std::string findings;
        for (const Finding& finding : verdict.findings) {
            const std::string first = earlier.Of(finding, verdict.trial.name);
            findings += fmt::format("<p><b>{}</b> {}</p>", EscapeXml(finding.rule),
                                    EscapeXml(first.empty() ? finding.what : "as in \"" + first + '"'));
        }
        if (!findings.empty()) {
            findings += fmt::format("<p>Again: <code>{}</code></p>", EscapeXml(Again(heading, verdict)));
        }
        rows += fmt::format("<tr class=\"{0}\"><td>{5}</td><td><b>{1}</b><br>{2}{3}</td><td>{4} ms</td></tr>\n",
                            verdict.findings.empty() ? "passed" : "finding", EscapeXml(verdict.trial.name),
                            EscapeXml(verdict.trial.purpose), findings, verdict.milliseconds, WordFor(verdict));
    }
    constexpr char style[] =
        "body{font-family:sans-serif;max-width:70em;margin:2em auto;color:#222}"
        "table{border-collapse:collapse;width:100%}td{border-top:1px solid #ccc;padding:.4em;vertical-align:top}"
        ".passed td:first-child{color:#176d17}.finding td:first-child{color:#b00020;font-weight:bold}"
        ".finding p{margin:.4em 0}code{background:#eee;padding:0 .2em}";
    return fmt::format(
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>{0}</title><style>{1}</style></head>\n"
        "<body><h1>{0}</h1><p>{2}. vsmsgbus {3}.</p>\n<table>\n{4}</table></body></html>\n",
        EscapeXml("Would this module be let onto a million machines? " + heading.modules), style, Summary(verdicts),
        heading.version, rows);
}

}  // namespace tool::judge
