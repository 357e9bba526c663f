#include "dispatcher/DispatcherLog.h"

#include <cstdarg>
#include <cstdio>

void DispatcherLog::SetSink(LogLineSink lineSink, void* sinkUserData) noexcept {
    sink = lineSink;
    userData = sinkUserData;
}

void DispatcherLog::Write(LogSeverity severity, const char* format, ...) const noexcept {
    if (sink == nullptr) {
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
