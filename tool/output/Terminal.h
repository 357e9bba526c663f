#pragma once

#include <cstdint>
#include <string_view>

// The program's standard output. Where it is a terminal, texts may have a colour; in a file or a pipe none has.
class Terminal {
public:
    // Has a terminal take UTF-8 while this lives.
    Terminal();
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    // `colour` is made of the system's FOREGROUND_ bits.
    void Print(std::string_view text, uint16_t colour) const;

private:
    void* const output;
    bool isTerminal = false;
    uint16_t usualColour = 0;
    uint32_t usualCodePage = 0;
};
