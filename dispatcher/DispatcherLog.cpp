#include "dispatcher/DispatcherLog.h"

#include <cstdio>
#include <utility>

#include "base/Boundary.h"

namespace bridge {

FormattedLine::FormattedLine(const char* format, va_list arguments) noexcept {
    std::vsnprintf(text, sizeof text, format, arguments);
    text[sizeof text - 1] = '\0';
}

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
    va_list arguments{};
    va_start(arguments, format);
    const FormattedLine line(format, arguments);
    va_end(arguments);
    Guarded([&] { pending.lines.push_back({severity, line.Text()}); });
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

}  // namespace bridge
