#include "soak/KeepingSink.h"

#include "support/HeldLocks.h"
#include "support/LineLog.h"

void KeepingSink::Write(int level, const wchar_t* text) {
    ExpectNoLockHeld("Write");
    std::string line = std::to_string(level) + ": " + Narrow(text);
    const std::lock_guard guard(lock);
    if (!lines.empty() && lines.back().text == line) {
        ++lines.back().times;
        return;
    }
    lines.push_back({std::move(line)});
    if (lines.size() > capacity) {
        lines.pop_front();
    }
}

std::vector<std::string> KeepingSink::Lines() const {
    const std::lock_guard guard(lock);
    std::vector<std::string> texts;
    for (const auto& [text, times] : lines) {
        texts.push_back(times == 1 ? text : text + ", " + std::to_string(times) + " times");
    }
    return texts;
}

void KeepingSink::Forget() {
    const std::lock_guard guard(lock);
    lines = {};
}

KeepingSink& TheSink() {
    static KeepingSink sink;
    return sink;
}
