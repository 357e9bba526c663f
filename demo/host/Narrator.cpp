#include "Narrator.h"

#include <fmt/format.h>
#include <windows.h>

#include <cstdio>

#include "tool/output/Wrap.h"

namespace {

constexpr size_t columns = 100;

uint16_t ColourOf(std::string_view actor) {
    if (actor == "agent") {
        return FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_INTENSITY;
    }
    if (actor == "bridge") {
        return FOREGROUND_GREEN | FOREGROUND_BLUE | FOREGROUND_INTENSITY;
    }
    return actor == "module" ? FOREGROUND_GREEN | FOREGROUND_INTENSITY
                             : FOREGROUND_RED | FOREGROUND_BLUE | FOREGROUND_INTENSITY;
}

}  // namespace

void Narrator::Say(std::string_view actor, std::string_view line) {
    const std::lock_guard guard(mutex);
    const std::string label = fmt::format("{:>6}: ", actor);
    terminal.Print(label, ColourOf(actor));
    PrintBehind(label.size(), line);
}

void Narrator::Detail(std::string_view actor, std::string_view line) {
    if (verbose) {
        Say(actor, line);
    }
}

void Narrator::Continue(std::string_view line) {
    const std::lock_guard guard(mutex);
    constexpr size_t indent = 10;
    fmt::print("{:{}}", "", indent);
    PrintBehind(indent, line);
}

void Narrator::PrintBehind(size_t column, std::string_view text) {
    const auto lines = Wrap(text, columns - column);
    fmt::print("{}\n", fmt::join(lines, "\n" + std::string(column, ' ')));
    std::fflush(stdout);
}
