#include "tool/output/Progress.h"

#include <fmt/format.h>
#include <windows.h>

#include <cstdio>
#include <utility>

namespace {

bool IsStandardErrorATerminal() {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode) != FALSE;
}

}  // namespace

Progress::Progress(std::string whatIsDone) : what(std::move(whatIsDone)), isTerminal(IsStandardErrorATerminal()) {}

Progress::~Progress() {
    if (isTerminal && hasTold) {
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(what.size()) + 7, "");
    }
}

void Progress::Tell(double share) {
    constexpr std::chrono::seconds pause(1);
    if (Clock::now() - last < pause) {
        return;
    }
    last = Clock::now();
    hasTold = true;
    std::fputs(
        fmt::format("{}{}: {:3.0f} %{}", isTerminal ? "\r" : "", what, share * 100, isTerminal ? "" : "\n").c_str(),
        stderr);
    std::fflush(stderr);
}
