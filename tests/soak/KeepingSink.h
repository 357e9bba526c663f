#pragma once

#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "VsMsgbus/LogSink.h"

// The log sink of everybody in the soak: keeps the last lines, for a report. Any Exit takes it away until the next
// Entry, so that lines may be missing.
class KeepingSink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int level, const wchar_t* text) override;

    std::vector<std::string> Lines() const;
    void Forget();

private:
    struct Kept {
        std::string text;
        size_t times = 1;  // one after the other
    };

    static constexpr size_t capacity = 20;

    mutable std::mutex lock;
    std::deque<Kept> lines;
};

KeepingSink& TheSink();
