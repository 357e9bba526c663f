// What the bridge locks and waits with. It never fails and never needs memory. The standard library's mutexes and
// condition variables take some at their first use with our toolchain: when there is none, locking throws where nothing
// may be thrown, and waiting returns at once without letting go of the mutex.
#pragma once

#include <windows.h>

#include <chrono>

// Meets the standard's Lockable as far as std::lock_guard needs it. Not to be locked again by its owner.
class Mutex {
public:
    constexpr Mutex() noexcept = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() noexcept { ::AcquireSRWLockExclusive(&lockWord); }
    void unlock() noexcept { ::ReleaseSRWLockExclusive(&lockWord); }

private:
    friend class Condition;

    SRWLOCK lockWord = SRWLOCK_INIT;
};

// What threads wait for under a Mutex.
class Condition {
public:
    constexpr Condition() noexcept = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    void NotifyAll() noexcept { ::WakeAllConditionVariable(&variable); }

    // Waits, with the mutex unlocked, until `isMet()`, which is asked with the mutex locked. To be called with the
    // mutex locked.
    template <class Predicate>
    void Wait(Mutex& mutex, Predicate&& isMet) {
        while (!isMet()) {
            Sleep(mutex, INFINITE);
        }
    }

    // The same for `limit` at most. Whether it is met.
    template <class Predicate>
    bool WaitFor(Mutex& mutex, std::chrono::milliseconds limit, Predicate&& isMet) {
        using Clock = std::chrono::steady_clock;
        const auto end = Clock::now() + limit;
        while (!isMet()) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
            if (left.count() <= 0) {
                return false;
            }
            Sleep(mutex, static_cast<DWORD>(left.count()));
        }
        return true;
    }

private:
    // Others get the mutex even when the system does not wait.
    void Sleep(Mutex& mutex, DWORD milliseconds) noexcept {
        constexpr DWORD pause = 10;
        if (::SleepConditionVariableSRW(&variable, &mutex.lockWord, milliseconds, 0) == FALSE &&
            ::GetLastError() != ERROR_TIMEOUT) {
            mutex.unlock();
            ::Sleep(pause);
            mutex.lock();
        }
    }

    CONDITION_VARIABLE variable = CONDITION_VARIABLE_INIT;
};
