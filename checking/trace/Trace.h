// The record of a process: every export and every callback, and what happens between them, in the file that the
// environment's VSMSGBUS_TRACE names. VSMSGBUS_TRACE_LIMIT is its greatest size in bytes, 64 MB when that is not set.
#pragma once

#include <string_view>

#include "checking/trace/TraceEvent.h"

namespace checking {

// Whether a record is kept. False costs one load.
bool IsTracing() noexcept;

void Trace(TracePhase phase, std::string_view name, const TraceArguments& arguments) noexcept;

// The same, with arguments that `describe(arguments)` adds; it is called only when a record is kept.
template <class Describe>
void Trace(TracePhase phase, std::string_view name, const Describe& describe) noexcept {
    if (IsTracing()) {
        try {
            TraceArguments arguments;
            describe(arguments);
            Trace(phase, name, arguments);
        } catch (...) {
            // An event for which there is no memory is not recorded.
            return;
        }
    }
}

// A span of the record without arguments, from construction to destruction.
class Span {
public:
    explicit Span(const char* spanName) noexcept : name(spanName) { Trace(TracePhase::Begin, name, TraceArguments()); }
    ~Span() { Trace(TracePhase::End, name, TraceArguments()); }
    Span(const Span&) = delete;
    Span& operator=(const Span&) = delete;

private:
    const char* const name;
};

// No event is recorded afterwards.
void FinishTrace() noexcept;

}  // namespace checking
