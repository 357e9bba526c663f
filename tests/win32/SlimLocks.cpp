// Slim locks and condition variables. They need no end on Windows, and none here.
#include <ctime>

#include "Call.h"
#include "Callers.h"
#include "win32/threads.h"

namespace {

timespec Deadline(DWORD milliseconds) {
    constexpr long nanosecondsOfMillisecond = 1'000'000;
    constexpr long nanosecondsOfSecond = 1'000'000'000;
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    const long nanoseconds = time.tv_nsec + static_cast<long>(milliseconds % 1000) * nanosecondsOfMillisecond;
    time.tv_sec += static_cast<time_t>(milliseconds / 1000) + nanoseconds / nanosecondsOfSecond;
    time.tv_nsec = nanoseconds % nanosecondsOfSecond;
    return time;
}

}  // namespace

void AcquireSRWLockExclusive(PSRWLOCK lock) {
    win32::Support(::pthread_mutex_lock(&lock->mutex) == 0, "acquiring a lock that is not there");
}

void ReleaseSRWLockExclusive(PSRWLOCK lock) {
    win32::Support(::pthread_mutex_unlock(&lock->mutex) == 0, "releasing a lock that the thread does not have");
}

BOOL SleepConditionVariableSRW(PCONDITION_VARIABLE condition, PSRWLOCK lock, DWORD milliseconds, ULONG flags) {
    win32::Support(flags == 0, "locks that are shared");
    return win32::AnswerOr(FALSE, "SleepConditionVariableSRW", [&] {
        if (milliseconds == INFINITE) {
            ::pthread_cond_wait(&condition->condition, &lock->mutex);
            return TRUE;
        }
        const timespec deadline = Deadline(win32::LimitedWait(milliseconds));
        if (::pthread_cond_clockwait(&condition->condition, &lock->mutex, CLOCK_MONOTONIC, &deadline) != 0) {
            throw win32::Failure{ERROR_TIMEOUT};
        }
        return TRUE;
    });
}

void WakeAllConditionVariable(PCONDITION_VARIABLE condition) {
    ::pthread_cond_broadcast(&condition->condition);
}
