// A logger of the agent: keeps the lines printed through it.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace simulator {

class Logger {
public:
    void Add(std::string line);
    size_t Size() const;
    // The line, valid as long as the logger is, or null beyond the last one.
    const char* At(size_t index) const;

private:
    mutable std::mutex mutex;
    std::deque<std::string> lines;  // does not move lines that were handed out
};

}  // namespace simulator
