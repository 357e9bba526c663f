// Counts misuses of the agent: dead handles used, calls made with a lock held.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>

namespace simulator {

class MisuseLog {
public:
    void Add(std::string_view function, std::string_view description) noexcept;
    size_t Count() const;
    // The last one since Clear, or an empty text. Stays valid as long as the log, also after Clear.
    const char* Last() const;
    void Clear();

private:
    mutable std::mutex mutex;
    std::deque<std::string> texts;  // never shrinks: the texts were handed out
    size_t count = 0;
    const char* last = "";
};

}  // namespace simulator
