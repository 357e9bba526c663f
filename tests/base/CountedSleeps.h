#pragma once

#include <windows.h>

#include "support/LineLog.h"
#include "support/SystemFunction.h"

// Counts how often threads fall asleep for a lock or a condition of ours. One at a time.
class CountedSleeps {
public:
    CountedSleeps() { current = this; }

    size_t Count() const { return log.Lines().size(); }
    bool WaitFor(size_t count, std::chrono::milliseconds limit = soon) const { return log.WaitForSize(count, limit); }

private:
    static BOOL WINAPI Sleep(PCONDITION_VARIABLE condition, PSRWLOCK lock, DWORD milliseconds, ULONG flags) {
        current->log.Add("sleeps");
        return current->function.original(condition, lock, milliseconds, flags);
    }

    static inline CountedSleeps* current = nullptr;
    LineLog log;
    SystemFunction<decltype(::SleepConditionVariableSRW)> function{&::SleepConditionVariableSRW, &Sleep};
};
