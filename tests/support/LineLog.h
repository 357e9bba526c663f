#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

// How long a test waits for something that should happen at once. Long, because only a failing test waits so long.
inline constexpr std::chrono::milliseconds soon{30000};

// Lines in the order in which they came, from whatever thread.
class LineLog {
public:
    void Add(std::string line);

    std::vector<std::string> Lines() const;
    // Returns the lines and forgets them.
    std::vector<std::string> Take();

    // Waits until the line was added `count` times, or that many lines are there; false when they were not in time.
    bool WaitFor(std::string_view line, size_t count = 1, std::chrono::milliseconds limit = soon) const;
    bool WaitForSize(size_t size, std::chrono::milliseconds limit = soon) const;

private:
    mutable std::mutex mutex;
    mutable std::condition_variable added;
    std::vector<std::string> lines;
};

// UTF-16 as UTF-8, for lines that are compared and printed.
std::string Narrow(std::wstring_view wide);
