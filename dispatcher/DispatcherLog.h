#pragma once

#include <cstdint>

// Severities of the bridge's own printf-style lines.
enum LogSeverity : uint32_t {
    SeverityFailure = 2,
    SeverityProgress = 5,
    SeverityDetail = 6,
};

// A line longer than this, terminator included, is cut.
inline constexpr int logLineCapacity = 2048;

// What takes a finished line. The texts are valid during the call.
using LogLineSink = int32_t (*)(uint32_t severity, const char* module, const char* message, void* userData);

// Formats the dispatcher's lines for a sink, under the module name "dispatcher". What nobody takes is not formatted: a
// load writes two lines for each of up to 66 names, which costs more than to look the names up.
class DispatcherLog {
public:
    // The sink takes lines as severe as `leastSevere` or more.
    void SetSink(LogLineSink lineSink, void* sinkUserData, LogSeverity leastSevere) noexcept;

    [[gnu::format(printf, 3, 4)]] void Write(LogSeverity severity, const char* format, ...) const noexcept;

private:
    LogLineSink sink = nullptr;
    void* userData = nullptr;
    LogSeverity threshold = SeverityDetail;
};
