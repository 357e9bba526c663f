// What the bridge locks and waits with. It never fails and never needs memory. The standard library's mutexes and
// condition variables take some at their first use with our toolchain: when there is none, locking throws where nothing
// may be thrown, and waiting returns at once without letting go of the mutex. The system's slim locks do neither, but
// taken for every lock they cost five interlocked operations under Wine where two do; here they are what
// threads sleep with.
#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "base/Attributes.h"
#include "base/HeldLocks.h"

// Threads asleep. One that falls asleep is inside from before it looks whether it must until it sleeps; who wakes
// passes through first, and so misses nobody that looked before.
class Sleepers {
public:
    void Enter() noexcept { ::AcquireSRWLockExclusive(&lock); }
    void Leave() noexcept { ::ReleaseSRWLockExclusive(&lock); }

    // To be called inside, and left and entered again meanwhile. May end early.
    void Sleep(DWORD milliseconds) noexcept {
        constexpr DWORD pause = 10;
        if (::SleepConditionVariableSRW(&awakening, &lock, milliseconds, 0) == FALSE &&
            ::GetLastError() != ERROR_TIMEOUT) {
            // The system does not let it sleep: others get in all the same.
            Leave();
            ::Sleep(pause);
            Enter();
        }
    }

    // To be called from outside.
    void WakeAll() noexcept {
        Enter();
        Leave();
        ::WakeAllConditionVariable(&awakening);
    }

private:
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE awakening = CONDITION_VARIABLE_INIT;
};

// Meets the standard's Lockable as far as std::lock_guard needs it. Not to be locked again by its owner. Whoever is let
// in may destroy it: who lets go of it touches nothing of it afterwards, and wakes sleepers elsewhere.
class Mutex {
public:
    constexpr Mutex() noexcept = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() noexcept {
        if (!TryLock()) [[unlikely]] {
            WaitForTurn();
        }
        NoteLockTaken();
    }

    void unlock() noexcept {
        NoteLockLeft();
        if (state.exchange(State::Free, std::memory_order_release) == State::Awaited) [[unlikely]] {
            WakeSleepers();
        }
    }

private:
    // Awaited: locked, and who unlocks it must wake somebody.
    enum class State : uint32_t { Free, Locked, Awaited };

    bool TryLock() noexcept {
        State expected = State::Free;
        return state.compare_exchange_strong(expected, State::Locked, std::memory_order_acquire,
                                             std::memory_order_relaxed);
    }
    NEVER_INLINED void WaitForTurn() noexcept {
        // An owner has a mutex for less time than a thread takes to fall asleep and to wake.
        constexpr int turnsBeforeSleep = 100;
        for (int turn = 0; turn < turnsBeforeSleep; ++turn) {
            YieldProcessor();
            if (state.load(std::memory_order_relaxed) == State::Free && TryLock()) {
                return;
            }
        }
        Sleepers& others = SharedSleepers();
        others.Enter();
        // Awaited even when it was free: this one does not know whether others sleep.
        while (state.exchange(State::Awaited, std::memory_order_acquire) != State::Free) {
            others.Sleep(INFINITE);
        }
        others.Leave();
    }
    // Those of a few other mutexes wake with them, and look again.
    NEVER_INLINED void WakeSleepers() const noexcept { SharedSleepers().WakeAll(); }

    Sleepers& SharedSleepers() const noexcept {
        // They are never destroyed.
        static_assert(std::is_trivially_destructible_v<Sleepers>);
        static constinit std::array<Sleepers, 16> all{};
        return all[reinterpret_cast<uintptr_t>(this) / 16 % all.size()];
    }

    std::atomic<State> state = State::Free;
};

// What threads wait for under a Mutex.
class Condition {
public:
    constexpr Condition() noexcept = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    // To be called with the mutex locked. Costs nothing when nobody waits.
    void NotifyAll() noexcept {
        if (waiting != 0) {
            sleepers.WakeAll();
        }
    }

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
    void Sleep(Mutex& mutex, DWORD milliseconds) noexcept {
        ++waiting;
        sleepers.Enter();
        mutex.unlock();
        sleepers.Sleep(milliseconds);
        sleepers.Leave();
        mutex.lock();
        --waiting;
    }

    size_t waiting = 0;  // under the mutex
    Sleepers sleepers;
};
