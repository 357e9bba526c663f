#pragma once

#include <cstdarg>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/Attributes.h"

namespace bridge {

// Severities of the bridge's own printf-style lines.
enum LogSeverity : uint32_t {
    SeverityFailure = 2,
    SeverityProgress = 5,
    SeverityDetail = 6,
};

// A line longer than this, terminator included, is cut.
inline constexpr int logLineCapacity = 2048;

// The line of a format and its arguments, cut where it is longer than logLineCapacity.
class FormattedLine {
public:
    LIKE_PRINTF(2, 0) FormattedLine(const char* format, va_list arguments) noexcept;

    const char* Text() const noexcept { return text; }

private:
    char text[logLineCapacity] = {};
};

// Takes a finished line. The texts are valid during the call.
using LogLineSink = int32_t (*)(uint32_t severity, const char* module, const char* message, void* userData);

// A sink with what it needs.
struct LogTarget {
    LogLineSink sink = nullptr;  // null: the lines go nowhere
    void* userData = nullptr;
    LogSeverity leastSevere = SeverityDetail;  // of the lines that the sink takes
    std::weak_ptr<void> owner{};               // of what userData points to; none for what outlives the target
    bool hasOwner = false;

    // Hands the line to the sink, unless the owner of its data is gone. Shares the owner for that long.
    int32_t Deliver(uint32_t severity, const char* module, const char* message) const;
};

// The dispatcher's lines of one operation, written under its lock and delivered after the lock was left: a sink may
// wait for another thread that needs the lock. Lines that the target does not take are not formatted: a load writes two
// lines for each of up to 66 names, which costs more than to look the names up. A line that finds no memory is lost.
class DispatcherLog {
public:
    void SetTarget(LogTarget lineTarget) noexcept;

    // Keeps a line.
    LIKE_PRINTF(3, 4) void Write(LogSeverity severity, const char* format, ...) const noexcept;

    // The lines that were written since the last Take.
    class Lines {
    public:
        // Delivers them in their order, under the module name "dispatcher". To be called with no lock held.
        void Deliver() const noexcept;

    private:
        friend class DispatcherLog;
        struct Line {
            LogSeverity severity;
            std::string text;
        };

        LogTarget target;
        std::vector<Line> lines;
    };
    Lines Take() const noexcept;

private:
    mutable Lines pending;
};

}  // namespace bridge
