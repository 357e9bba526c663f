#pragma once

#include <string>
#include <vector>

#include "tool/judge/Trial.h"
#include "tool/play/Playing.h"

namespace tool::judge {

// A mistake of a module in a trial.
struct Finding {
    std::string rule;  // of the checking bridge's; else CRASH, HANG, LEAK, LEFT-BEHIND or EXPECTATION
    std::string what;
};

// The outcome of a trial.
struct Verdict {
    Trial trial;
    std::vector<Finding> findings;
    int64_t milliseconds = 0;
    size_t steps = 0;
    bool isMet = true;  // false: the call that was to fail was not made, so that the story says nothing
};

// "passed", "FINDING" or "not met"
const char* WordFor(const Verdict& verdict);

// The findings in a playing of the trial.
std::vector<Finding> FindingsOf(const Trial& trial, const play::RunResult& run);

// How the table, the page and the files for machines name the modules and the package.
struct Heading {
    std::string modules;
    std::string version;
};

// For the screen: one line for each trial, with its findings below.
std::string MakeTable(const Heading& heading, const std::vector<Verdict>& verdicts);
std::string MakeJson(const Heading& heading, const std::vector<Verdict>& verdicts);
std::string MakeJUnit(const Heading& heading, const std::vector<Verdict>& verdicts);
// One page for a browser, with everything in it.
std::string MakePage(const Heading& heading, const std::vector<Verdict>& verdicts);

}  // namespace tool::judge
