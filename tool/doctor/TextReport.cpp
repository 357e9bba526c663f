#include "tool/doctor/TextReport.h"

#include <fmt/format.h>
#include <windows.h>

#include "tool/doctor/Diagnosis.h"
#include "tool/output/Terminal.h"
#include "tool/output/Wrap.h"

namespace tool::doctor {

namespace {

constexpr size_t columns = 110;
constexpr uint16_t plain = FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_BLUE;
constexpr uint16_t bright = plain | FOREGROUND_INTENSITY;

struct Mark {
    const char* sign;
    uint16_t colour;
};

Mark MarkOf(State state) {
    switch (state) {
        case State::Good: return {"\u2713", FOREGROUND_GREEN | FOREGROUND_INTENSITY};
        case State::Note: return {"!", FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_INTENSITY};
        case State::Bad: return {"\u2717", FOREGROUND_RED | FOREGROUND_INTENSITY};
        default: return {"-", FOREGROUND_INTENSITY};
    }
}

void PrintWrapped(const Terminal& terminal, const std::string& text, size_t indent, uint16_t colour) {
    for (const std::string& line : Wrap(text, columns - indent)) {
        terminal.Print(fmt::format("{:{}}{}\n", "", indent, line), colour);
    }
}

void PrintCheck(const Terminal& terminal, const Check& check, const Check* first) {
    constexpr size_t indent = 8;
    const Mark mark = MarkOf(check.state);
    terminal.Print(fmt::format("  {} ", mark.sign), mark.colour);
    const bool isReached = check.state != State::NotReached;
    terminal.Print(check.name + (isReached ? "\n" : ": not reached\n"), isReached ? plain : FOREGROUND_INTENSITY);
    for (const std::string& detail : check.details) {
        PrintWrapped(terminal, detail, indent, plain);
    }
    // What stands at the top is not said again.
    if (check.state == State::Bad && &check != first) {
        const Cause cause = CauseOf(check);
        PrintWrapped(terminal, cause.text, indent, plain);
        PrintWrapped(terminal, cause.remedy, indent, plain);
    } else if (&check == first) {
        PrintWrapped(terminal, "the first cause, above", indent, plain);
    }
}

void PrintFirstCause(const Terminal& terminal, const Check* first) {
    if (first == nullptr) {
        terminal.Print("Nothing is found that keeps a module from being asked.\n", bright);
        return;
    }
    const Cause cause = CauseOf(*first);
    terminal.Print(fmt::format("First cause [{}]\n", cause.name), bright);
    PrintWrapped(terminal, cause.text, 2, plain);
    terminal.Print("What to do\n", bright);
    PrintWrapped(terminal, cause.remedy, 2, plain);
}

}  // namespace

void PrintText(const Checks& checks) {
    const Terminal terminal;
    const Check* const first = FirstCause(checks);
    PrintFirstCause(terminal, first);
    std::string group;
    for (const Check& check : checks) {
        if (check.group != group) {
            group = check.group;
            terminal.Print(fmt::format("\n{}\n", group), bright);
        }
        PrintCheck(terminal, check, first);
    }
}

}  // namespace tool::doctor
