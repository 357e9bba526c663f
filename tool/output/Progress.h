#pragma once

#include <chrono>
#include <string>

// Tells on standard error how far something is that takes longer than a second, once a second: on a terminal in one
// line, else in lines of their own.
class Progress {
public:
    // `what` is done, as in "reading".
    explicit Progress(std::string what);
    // Removes the line from a terminal.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // `share` is from 0 to 1.
    void Tell(double share);

private:
    using Clock = std::chrono::steady_clock;

    const std::string what;
    Clock::time_point last = Clock::now();
    const bool isTerminal;
    bool hasTold = false;
};
