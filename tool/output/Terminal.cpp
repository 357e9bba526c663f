#include "tool/output/Terminal.h"

#include <fmt/format.h>
#include <windows.h>

#include <cstdio>

Terminal::Terminal() : output(::GetStdHandle(STD_OUTPUT_HANDLE)) {
    CONSOLE_SCREEN_BUFFER_INFO screen{};
    if (::GetConsoleScreenBufferInfo(output, &screen) != FALSE) {
        isTerminal = true;
        usualColour = screen.wAttributes;
        usualCodePage = ::GetConsoleOutputCP();
        ::SetConsoleOutputCP(CP_UTF8);
    }
}

Terminal::~Terminal() {
    if (isTerminal) {
        std::fflush(stdout);
        ::SetConsoleOutputCP(usualCodePage);
    }
}

// A colour is the terminal's and not part of the text: what was printed before must have reached it.
void Terminal::Print(std::string_view text, uint16_t colour) const {
    if (isTerminal) {
        std::fflush(stdout);
        ::SetConsoleTextAttribute(output, colour);
    }
    fmt::print("{}", text);
    if (isTerminal) {
        std::fflush(stdout);
        ::SetConsoleTextAttribute(output, usualColour);
    }
}
