// The rules of the checking bridge. Its messages and docs/CHECKS.md are made of this table.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace checking {

enum class Rule : unsigned char {
    IdDiffers,
    IdUnusable,
    MaskEmpty,
    MaskMissing,
    InterfaceMissing,
    NeverEntered,
    SetTwice,
    SetNull,
    OnEndedStack,
    InterfaceGone,
    HeadersDiffer,
    RemoveUnknown,
    RemoveInside,
    RemoveGaveUp,
    LeftRegistered,
    EntryNoSink,
    EntryFailed,
    ExitUnknown,
    ExitOtherInstance,
    ExitWhileCalled,
    ExitMissing,
    LoaderLock,
    SinkTaken,
    NotEntered,
    LentKept,
    LentOtherThread,
    TextKept,
    OutputTooSmall,
    BufferNotEmpty,
    BufferReleasedTwice,
    BufferForeign,
    BufferNotReleased,
    NothingDone,
    TaskStatus,
    TaskAnswer,
    TaskStateAnswer,
    TaskWithoutEnd,
    WalkRefused,
    WalkOfOtherId,
    PropertyNull,
    CallbackThrew,
    CallbackSlow,
    SinkSlow,
    WaitCycle,
    // Notes: what may be right, and what is of the machine and not of a module.
    FailureIgnored,
    AgentAbsent,
    AgentWithoutVersion,
    AgentWithoutPath,
    AgentLibrary,
    AgentExport,
};

// Texts are UTF-8. In `what`, `consequence` and `remedy` "{1}" to "{3}" stand for what a finding gives.
struct RuleText {
    Rule rule;
    const char* name;         // as in "MASK-MISSING"
    const char* what;         // what was done: the middle of a sentence, behind the product's id
    const char* consequence;  // what comes of it: the end of that sentence
    const char* remedy;       // one or more sentences
    const char* mistake;      // code that makes it
    const char* right;        // the same code as it should be
};

// Whether what it says may be no mistake of a module's: it is told, but no finding.
constexpr bool IsNote(Rule rule) noexcept {
    return rule >= Rule::FailureIgnored;
}

// Whether a finding may be the fault of the checks, when memory was too short to note what a module did.
constexpr bool RestsOnNotes(Rule rule) noexcept {
    switch (rule) {
        case Rule::MaskMissing:
        case Rule::InterfaceMissing:
        case Rule::NeverEntered:
        case Rule::SetTwice:
        case Rule::RemoveUnknown:
        case Rule::ExitUnknown:
        case Rule::NotEntered:
        case Rule::BufferNotEmpty:
        case Rule::BufferReleasedTwice:
        case Rule::BufferForeign:
        case Rule::BufferNotReleased: return true;
        default: return false;
    }
}

// The texts of every rule, in the order of the enumeration.
std::span<const RuleText> AllRules() noexcept;
const RuleText& TextOf(Rule rule) noexcept;
// Null when no rule is called that.
const RuleText* FindRule(const char* name) noexcept;

// One of a rule's texts, with what a finding gives in the places of "{1}" to "{3}".
std::string WithDetails(std::string_view text, std::initializer_list<std::string_view> details);

}  // namespace checking
