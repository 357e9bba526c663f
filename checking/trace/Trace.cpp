#include "checking/trace/Trace.h"

#include <windows.h>

#include <memory>
#include <string>

#include "base/Boundary.h"
#include "checking/Environment.h"
#include "checking/trace/TraceFile.h"

namespace checking {

namespace {

// Made at the first look; null when no record is kept. It stays until the process ends.
TraceFile* Make() noexcept {
    constexpr unsigned long usual = 64UL << 20U;
    TraceFile* made = nullptr;
    bridge::Guarded([&] {
        if (const std::wstring path = TextFromEnvironment(L"VSMSGBUS_TRACE"); !path.empty()) {
            auto file = std::make_unique<TraceFile>(path.c_str(), NumberFromEnvironment("VSMSGBUS_TRACE_LIMIT", usual));
            made = file->IsThere() ? file.release() : nullptr;
        }
    });
    return made;
}

TraceFile* File() noexcept {
    static TraceFile* const file = Make();
    return file;
}

int64_t Nanoseconds() noexcept {
    static const double perTick = [] {
        LARGE_INTEGER frequency;
        ::QueryPerformanceFrequency(&frequency);
        return 1e9 / static_cast<double>(frequency.QuadPart);
    }();
    LARGE_INTEGER now;
    ::QueryPerformanceCounter(&now);
    return static_cast<int64_t>(static_cast<double>(now.QuadPart) * perTick);
}

}  // namespace

bool IsTracing() noexcept {
    return File() != nullptr;
}

void Trace(TracePhase phase, std::string_view name, const TraceArguments& arguments) noexcept {
    if (TraceFile* const file = File()) {
        bridge::Guarded([&] {
            file->Add(
                TraceLine(phase, name, Nanoseconds(), ::GetCurrentProcessId(), ::GetCurrentThreadId(), arguments));
        });
    }
}

void FinishTrace() noexcept {
    if (TraceFile* const file = File()) {
        bridge::Guarded([&] {
            std::string last = TraceLine(TracePhase::Instant, "end of the record", Nanoseconds(),
                                         ::GetCurrentProcessId(), ::GetCurrentThreadId(), TraceArguments());
            file->Finish(last.substr(0, last.rfind(',')));
        });
    }
}

}  // namespace checking
