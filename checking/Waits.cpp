#include "checking/Waits.h"

#include <windows.h>

#include <map>
#include <utility>

#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"

namespace checking {

namespace {

using Waiting = std::map<DWORD, std::vector<RegistrationPointer>>;  // by thread

struct WaitTable {
    StateLock lock;
    Waiting waiting;
};

WaitTable& Waits() {
    static bridge::NoDestroyAtExit<WaitTable> table;
    return *table;
}

// Whether `thread` waits, by way of others that wait, for `other`.
bool WaitsFor(const Waiting& waiting, DWORD thread, DWORD other, size_t depth) {
    const auto found = waiting.find(thread);
    if (found == waiting.end() || depth == 0) {
        return false;
    }
    for (const RegistrationPointer& registration : found->second) {
        for (const Insider& insider : registration->Insiders()) {
            if (insider.thread != thread &&
                (insider.thread == other || WaitsFor(waiting, insider.thread, other, depth - 1))) {
                return true;
            }
        }
    }
    return false;
}

// Reports the first thread inside the interfaces of `whatFor` that waits for the calling thread.
void ReportCycle(const Waiting& waiting, const char* function, const std::vector<RegistrationPointer>& whatFor) {
    constexpr size_t deepest = 16;
    const DWORD self = ::GetCurrentThreadId();
    for (const RegistrationPointer& registration : whatFor) {
        for (const Insider& insider : registration->Insiders()) {
            if (insider.thread != self && WaitsFor(waiting, insider.thread, self, deepest)) {
                Report(Rule::WaitCycle, registration->NarrowId(),
                       {function, std::to_string(insider.thread), insider.function});
                return;
            }
        }
    }
}

}  // namespace

Wait::Wait(const char* function, std::vector<RegistrationPointer> whatFor) {
    Waiting copy;
    {
        const Guard guard(Waits().lock);
        Waits().waiting.insert_or_assign(::GetCurrentThreadId(), whatFor);
        copy = Waits().waiting;
    }
    ReportCycle(copy, function, whatFor);
}

Wait::~Wait() {
    const Guard guard(Waits().lock);
    Waits().waiting.erase(::GetCurrentThreadId());
}

}  // namespace checking
