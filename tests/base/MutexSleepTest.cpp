// No wake-up is lost between a thread's look at what it waits for and its sleep. Natively alone: a program for Windows
// does not import what takes a slim lock by name.
#include <gmock/gmock.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>

#include "base/Mutex.h"
#include "support/Event.h"
#include "support/SystemFunction.h"

namespace {

// A thread on its way to sleep is held up, and another one meets the condition meanwhile. No wake-up is lost as long as
// the other one finds a lock in its way, and is let in only when the first one sleeps.
class MutexSleep : public testing::Test {
protected:
    MutexSleep() { current = this; }

    // The thread that waits is held up where `isHeldUp` says.
    void WaitWhileAnotherMeets() {
        waiter = ::GetCurrentThreadId();
        std::thread other([this] {
            isOnItsWay.Wait();
            meeting = ::GetCurrentThreadId();
            {
                const std::lock_guard guard(mutex);
                isMet = true;
                condition.NotifyAll();
            }
            isThrough = true;
            answered.Set();
        });
        {
            const std::lock_guard guard(mutex);
            EXPECT_TRUE(condition.WaitFor(mutex, soon, [this] { return isMet; }));
        }
        other.join();
    }

    static void WINAPI Acquire(PSRWLOCK lock) {
        current->Look(lock);
        current->acquiring.original(lock);
    }
    static BOOL WINAPI Sleep(PCONDITION_VARIABLE toSleepOn, PSRWLOCK lock, DWORD milliseconds, ULONG flags) {
        if (::GetCurrentThreadId() == current->waiter) {
            current->HoldUp(Place::BeforeSleep);
        }
        return current->sleeping.original(toSleepOn, lock, milliseconds, flags);
    }

    enum class Place { BeforeEnter, BeforeSleep };
    Place heldUpAt = Place::BeforeEnter;
    // Of the other thread, when the first one went on.
    bool wasThrough = false;

private:
    void Look(PSRWLOCK lock) {
        const DWORD thread = ::GetCurrentThreadId();
        if (thread == waiter && sleepersLock == nullptr) {
            sleepersLock = lock;
            HoldUp(Place::BeforeEnter);
        } else if (thread == meeting && (lock != sleepersLock || heldUpAt == Place::BeforeSleep)) {
            // It has to wait, for the mutex or for the sleepers.
            answered.Set();
        }
    }

    void HoldUp(Place place) {
        if (place == heldUpAt && !std::exchange(wasHeldUp, true)) {
            isOnItsWay.Set();
            EXPECT_TRUE(answered.Wait());
            wasThrough = isThrough;
        }
    }

    static inline MutexSleep* current = nullptr;
    Mutex mutex;
    Condition condition;
    bool isMet = false;
    std::atomic<DWORD> waiter = 0;
    std::atomic<DWORD> meeting = 0;
    std::atomic<PSRWLOCK> sleepersLock = nullptr;
    std::atomic<bool> isThrough = false;
    bool wasHeldUp = false;
    Event isOnItsWay;
    Event answered;
    SystemFunction<decltype(::AcquireSRWLockExclusive)> acquiring{&::AcquireSRWLockExclusive, &Acquire};
    SystemFunction<decltype(::SleepConditionVariableSRW)> sleeping{&::SleepConditionVariableSRW, &Sleep};
};

TEST_F(MutexSleep, TheMutexIsLetGoOfOnlyAmongTheSleepers) {
    heldUpAt = Place::BeforeEnter;
    WaitWhileAnotherMeets();
    EXPECT_FALSE(wasThrough) << "it woke nobody, and nobody else will";
}

TEST_F(MutexSleep, WhoWakesPassesThroughTheSleepersFirst) {
    heldUpAt = Place::BeforeSleep;
    WaitWhileAnotherMeets();
    EXPECT_FALSE(wasThrough) << "it woke nobody, and nobody else will";
}

}  // namespace
