#include "tool/doctor/TextReport.h"

#include <fmt/format.h>
#include <windows.h>

#include "tool/doctor/Diagnosis.h"
#include "tool/output/Terminal.h"
#include "tool/output/Wrap.h"

namespace tool::doctor {

namespace {

constexpr size_t columns = 110;
constexpr size_t indentOfDetails = 8;
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

// Details short enough for it stand beside the name.
void PrintNameAndDetails(const Terminal& terminal, const Check& check) {
    constexpr size_t roomBesideName = columns - 6;
    if (check.details.size() == 1 && check.name.size() + check.details.front().size() <= roomBesideName) {
        terminal.Print(fmt::format("{}: {}\n", check.name, check.details.front()), plain);
        return;
    }
    terminal.Print(check.name + "\n", plain);
    for (const std::string& detail : check.details) {
        PrintWrapped(terminal, detail, indentOfDetails, plain);
    }
}

void PrintCheck(const Terminal& terminal, const Check& check, const Check* first) {
    const Mark mark = MarkOf(check.state);
    terminal.Print(fmt::format("  {} ", mark.sign), mark.colour);
    if (check.state == State::NotReached) {
        terminal.Print(check.name + ": not reached\n", mark.colour);
        return;
    }
    PrintNameAndDetails(terminal, check);
    // The first cause stands at the top already.
    if (&check == first) {
        PrintWrapped(terminal, "the first cause, above", indentOfDetails, plain);
    } else if (check.state == State::Bad) {
        const Cause cause = CauseOf(check);
        PrintWrapped(terminal, cause.text, indentOfDetails, plain);
        PrintWrapped(terminal, cause.remedy, indentOfDetails, plain);
    }
}

void PrintFirstCause(const Terminal& terminal, const Check* first) {
    if (first == nullptr) {
        terminal.Print("Nothing is found that keeps a module from being asked.\n", bright);
        return;
    }
    const Cause cause = CauseOf(*first);
    const bool isMistakeAlone = first->problem == Problem::ModuleMistake;
    const char* const heading = isMistakeAlone
                                    ? "Nothing is found that keeps the module from being asked, but it makes a mistake"
                                    : "First cause";
    terminal.Print(fmt::format("{} [{}]\n", heading, cause.name), bright);
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
