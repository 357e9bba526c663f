// What the bridge locks and waits with.
#include "base/Mutex.h"

#include <gmock/gmock.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "support/Event.h"
#include "support/LineLog.h"
#include "support/SystemFunction.h"

namespace {

using namespace std::chrono_literals;

TEST(BridgeMutex, KeepsOthersOut) {
    Mutex mutex;
    int number = 0;
    const auto count = [&] {
        for (int i = 0; i < 1000; ++i) {
            const std::lock_guard guard(mutex);
            ++number;
        }
    };
    std::thread other(count);
    count();
    other.join();
    EXPECT_EQ(number, 2000);
}

// Longer than a thread waits before it sleeps: one that nobody wakes keeps this test from its end.
TEST(BridgeMutex, WakesWhoSleepsForIt) {
    constexpr int turns = 200;
    constexpr int pauses = 2000;
    Mutex mutex;
    int number = 0;
    const auto hold = [&] {
        for (int turn = 0; turn < turns; ++turn) {
            const std::lock_guard guard(mutex);
            for (int pause = 0; pause < pauses; ++pause) {
                YieldProcessor();
            }
            ++number;
        }
    };
    std::vector<std::thread> others;
    for (int other = 0; other < 3; ++other) {
        others.emplace_back(hold);
    }
    hold();
    for (std::thread& other : others) {
        other.join();
    }
    EXPECT_EQ(number, 4 * turns);
}

TEST(BridgeMutex, IsHandedFromOneSleeperToTheNext) {
    Mutex mutex;
    LineLog order;
    std::vector<std::thread> others;
    {
        const std::lock_guard guard(mutex);
        for (int other = 0; other < 3; ++other) {
            others.emplace_back([&] {
                const std::lock_guard guardOfOther(mutex);
                order.Add("has it");
            });
        }
        EXPECT_THAT(order.Lines(), testing::IsEmpty());
    }
    for (std::thread& other : others) {
        other.join();
    }
    EXPECT_THAT(order.Lines(), testing::SizeIs(3));
}

// Nothing in it that one could come back to who has let go of it.
static_assert(sizeof(Mutex) == sizeof(uint32_t));

// As the gate of a record is: by the last of its users, which may be let in before the one before has let go entirely.
TEST(BridgeMutex, MayBeDestroyedByWhoeverIsLetInLast) {
    struct Shared {
        Mutex mutex;
        int users = 3;
    };
    constexpr int pauses = 2000;
    for (int round = 0; round < 500; ++round) {
        auto* const shared = new Shared;
        const auto use = [shared] {
            bool isLast = false;
            {
                const std::lock_guard guard(shared->mutex);
                isLast = --shared->users == 0;
                for (int pause = 0; pause < pauses && !isLast; ++pause) {
                    YieldProcessor();
                }
            }
            if (isLast) {
                delete shared;
            }
        };
        std::thread first(use);
        std::thread second(use);
        use();
        first.join();
        second.join();
    }
}

class BridgeCondition : public testing::Test {
protected:
    void Meet() {
        const std::lock_guard guard(mutex);
        isMet = true;
        condition.NotifyAll();
    }

    Mutex mutex;
    Condition condition;
    bool isMet = false;
};

TEST_F(BridgeCondition, EndsTheWaitsOfAllWhenItIsMet) {
    Event waiting[2];
    const auto wait = [this](Event& hasLocked) {
        const std::lock_guard guard(mutex);
        hasLocked.Set();
        condition.Wait(mutex, [this] { return isMet; });
        EXPECT_TRUE(isMet);
    };
    std::thread first([&] { wait(waiting[0]); });
    std::thread second([&] { wait(waiting[1]); });
    EXPECT_TRUE(waiting[0].Wait());
    EXPECT_TRUE(waiting[1].Wait());
    Meet();
    first.join();
    second.join();
}

TEST_F(BridgeCondition, ThatIsMetInTimeSaysSo) {
    std::thread other([this] { Meet(); });
    {
        const std::lock_guard guard(mutex);
        EXPECT_TRUE(condition.WaitFor(mutex, soon, [this] { return isMet; }));
    }
    other.join();
}

TEST_F(BridgeCondition, ThatIsNotMetInTimeSaysSoAfterThatTime) {
    const std::lock_guard guard(mutex);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(condition.WaitFor(mutex, 30ms, [] { return false; }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 30ms);
    EXPECT_TRUE(condition.WaitFor(mutex, 0ms, [] { return true; }));
    EXPECT_FALSE(condition.WaitFor(mutex, 0ms, [] { return false; }));
}

// A thread on its way to sleep is held up, and another one meets the condition meanwhile. No wake-up is lost as long as
// the other one finds a lock in its way, and is let in only when the first one sleeps.
class BetweenLockAndSleep : public BridgeCondition {
protected:
    BetweenLockAndSleep() { current = this; }

    // The thread that waits is held up where `isHeldUp` says.
    void WaitWhileAnotherMeets() {
        waiter = ::GetCurrentThreadId();
        std::thread other([this] {
            isOnItsWay.Wait();
            meeting = ::GetCurrentThreadId();
            Meet();
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

    static inline BetweenLockAndSleep* current = nullptr;
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

TEST_F(BetweenLockAndSleep, TheMutexIsLetGoOfOnlyAmongTheSleepers) {
    heldUpAt = Place::BeforeEnter;
    WaitWhileAnotherMeets();
    EXPECT_FALSE(wasThrough) << "it woke nobody, and nobody else will";
}

TEST_F(BetweenLockAndSleep, WhoWakesPassesThroughTheSleepersFirst) {
    heldUpAt = Place::BeforeSleep;
    WaitWhileAnotherMeets();
    EXPECT_FALSE(wasThrough) << "it woke nobody, and nobody else will";
}

BOOL WINAPI RefuseToSleep(PCONDITION_VARIABLE /*condition*/, PSRWLOCK /*lock*/, DWORD /*milliseconds*/,
                          ULONG /*flags*/) {
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

// A wait that held the mutex would keep out whoever meets the condition, for ever.
TEST_F(BridgeCondition, LetsOthersInWhenTheSystemDoesNotWait) {
    const SystemFunction<decltype(::SleepConditionVariableSRW)> sleeping(&::SleepConditionVariableSRW, &RefuseToSleep);
    Event hasLocked;
    std::thread waiting([&] {
        const std::lock_guard guard(mutex);
        hasLocked.Set();
        condition.Wait(mutex, [this] { return isMet; });
    });
    EXPECT_TRUE(hasLocked.Wait());
    Meet();
    waiting.join();
}

TEST(BridgeMutex, KeepsOthersOutWhenTheSystemDoesNotLetThemSleep) {
    const SystemFunction<decltype(::SleepConditionVariableSRW)> sleeping(&::SleepConditionVariableSRW, &RefuseToSleep);
    Mutex mutex;
    bool isInside = false;
    Event isReady;
    std::thread other;
    {
        const std::lock_guard guard(mutex);
        isInside = true;
        other = std::thread([&] {
            isReady.Set();
            const std::lock_guard guardOfOther(mutex);
            EXPECT_FALSE(isInside);
        });
        EXPECT_TRUE(isReady.Wait());
        for (int pause = 0; pause < 100'000; ++pause) {
            YieldProcessor();
        }
        isInside = false;
    }
    other.join();
}

}  // namespace
