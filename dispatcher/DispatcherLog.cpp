#include "dispatcher/DispatcherLog.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

#include "base/Boundary.h"

int32_t LogTarget::Deliver(uint32_t severity, const char* module, const char* message) const {
    if (sink == nullptr) {
        return 0;
    }
    const std::shared_ptr<void> inUse = owner.lock();
    return hasOwner && inUse == nullptr ? 0 : sink(severity, module, message, userData);
}

void DispatcherLog::SetTarget(LogTarget lineTarget) noexcept {
    pending.target = std::move(lineTarget);
}

void DispatcherLog::Write(LogSeverity severity, const char* format, ...) const noexcept {
    // The more severe, the smaller the number.
    if (pending.target.sink == nullptr || severity > pending.target.leastSevere) {
        return;
    }
    char line[logLineCapacity] = {};
    va_list arguments{};
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    line[sizeof line - 1] = '\0';
    Guarded([&] { pending.lines.push_back({severity, line}); });
}

DispatcherLog::Lines DispatcherLog::Take() const noexcept {
    Lines taken;
    taken.target = pending.target;
    taken.lines.swap(pending.lines);
    return taken;
}

void DispatcherLog::Lines::Deliver() const noexcept {
    for (const Line& line : lines) {
        Guarded([&] { target.Deliver(line.severity, "dispatcher", line.text.c_str()); });
    }
}
