// The bridge's locks are the system's own: they never fail and take no memory. With our toolchain, the standard
// library's locks take memory at their first use. When there is none, locking throws where nothing may be thrown, and
// waiting returns at once without unlocking the mutex.
#pragma once

#include <windows.h>

#include <chrono>

#include "base/HeldLocks.h"
#include "base/ScopedLock.h"
#include "base/ThreadSafety.h"

namespace bridge {

// A slim lock. Its owner must not lock it again. The thread that locks it next may destroy it.
class CAPABILITY("mutex") Mutex {
public:
    constexpr Mutex() noexcept = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void Lock() noexcept ACQUIRE() {
        ::AcquireSRWLockExclusive(&slimLock);
        NoteLockTaken(this);
    }
    void Unlock() noexcept RELEASE() {
        NoteLockLeft();
        ::ReleaseSRWLockExclusive(&slimLock);
    }

private:
    friend class Condition;

    SRWLOCK slimLock = SRWLOCK_INIT;
};

// Lets threads sleep under a Mutex until another thread notifies them. A sleep may end early: the thread checks again
// whether it must go on waiting.
class Condition {
public:
    using Clock = std::chrono::steady_clock;

    constexpr Condition() noexcept = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    // The caller holds the mutex that the threads wait under.
    void NotifyAll() noexcept { ::WakeAllConditionVariable(&variable); }

    // Waits, with the mutex unlocked.
    void Wait(Mutex& mutex) noexcept REQUIRES(mutex) { Sleep(mutex, INFINITE); }

    // The same until `end` at most. Returns false without waiting once `end` has passed.
    bool WaitUntil(Mutex& mutex, Clock::time_point end) noexcept REQUIRES(mutex) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        Sleep(mutex, static_cast<DWORD>(left.count()));
        return true;
    }

private:
    void Sleep(Mutex& mutex, DWORD milliseconds) noexcept REQUIRES(mutex) {
        constexpr DWORD pause = 10;
        if (::SleepConditionVariableSRW(&variable, &mutex.slimLock, milliseconds, 0) == FALSE &&
            ::GetLastError() != ERROR_TIMEOUT) {
            // The system has neither waited nor unlocked the mutex, which other threads need.
            mutex.Unlock();
            ::Sleep(pause);
            mutex.Lock();
        }
    }

    CONDITION_VARIABLE variable = CONDITION_VARIABLE_INIT;
};

}  // namespace bridge
