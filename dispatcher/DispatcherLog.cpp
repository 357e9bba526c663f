#include "dispatcher/DispatcherLog.h"

#include <cstdarg>
#include <cstdio>

void DispatcherLog::SetSink(LogLineSink lineSink, void* sinkUserData, LogSeverity leastSevere) noexcept {
    sink = lineSink;
    userData = sinkUserData;
    threshold = leastSevere;
}

void DispatcherLog::Write(LogSeverity severity, const char* format, ...) const noexcept {
    // The more severe, the smaller the number.
    if (sink == nullptr || severity > threshold) {
        return;
    }
    char line[logLineCapacity] = {};
    va_list arguments{};
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    line[sizeof line - 1] = '\0';
    sink(severity, "dispatcher", line, userData);
}
