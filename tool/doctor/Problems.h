// All that the doctor can find: the one table of its causes and remedies.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool::doctor {

enum class Problem {
    BridgeMissing,
    BridgeUnusable,
    LogLibMissing,
    LogLibUnusable,
    AgentAbsent,
    AgentUnreadable,
    VersionAbsent,
    VersionEmpty,
    VersionTooLong,
    PathAbsent,
    PathTooLong,
    PathEmpty,
    PathNotAbsolute,
    PathWrong,
    LibraryMissing,
    LibraryIsNone,
    LibraryOfOtherMachine,
    LibraryIncomplete,
    LibraryNeedsOther,
    LibraryWithoutExports,
    LibraryLacksExports,
    LibraryNotLoaded,
    AgentCrashes,
    AgentHangs,
    TrialFailed,
    ClientRefused,
    ProductRefused,
    ProductKept,
    ModuleMissing,
    ModuleIsNone,
    ModuleOfOtherMachine,
    ModuleIncomplete,
    ModuleNeedsOther,
    ModuleOfOtherBridge,
    CheckingBridgeMissing,
    ModuleNotLoaded,
    ModuleCrashes,
    ModuleHangs,
    ModuleWithoutFunction,
    ModuleAnswersFalse,
    ModuleDoesNotEnter,
    ModuleOfOtherSpelling,
    ModuleOfOtherId,
    // Findings of the checking bridge: those that keep the agent from asking the module, and other mistakes of the
    // module.
    ModuleFinding,
    ModuleMistake,
};

struct ProblemText {
    Problem problem;
    const char* name;  // for machines
    // Both have "{0}", "{1}", ... where the texts of Check::places go.
    const char* cause;
    const char* remedy;
};

const std::vector<ProblemText>& AllProblems();
const ProblemText& TextOf(Problem problem);

// The text with the places filled in.
std::string Filled(std::string_view text, const std::vector<std::string>& places);

}  // namespace tool::doctor
