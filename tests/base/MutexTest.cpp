// The bridge's lock and its condition variable.
#include "base/Mutex.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/Event.h"
#include "support/SystemFunction.h"

namespace {

using namespace std::chrono_literals;

TEST(Mutex, KeepsOthersOut) {
    Mutex mutex;
    int number = 0;
    const auto count = [&] {
        for (int i = 0; i < 1000; ++i) {
            const ScopedLock guard(mutex);
            ++number;
        }
    };
    std::thread other(count);
    count();
    other.join();
    EXPECT_EQ(number, 2000);
}

// A record's gate is destroyed like this, while the thread that held the lock before may still be inside Unlock.
TEST(Mutex, MayBeDestroyedByTheThreadThatLocksItLast) {
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
                const ScopedLock guard(shared->mutex);
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

BOOL WINAPI RefuseToSleep(PCONDITION_VARIABLE /*condition*/, PSRWLOCK /*lock*/, DWORD /*milliseconds*/,
                          ULONG /*flags*/) {
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

struct ConditionTest : testing::Test {
    void Meet() {
        const ScopedLock guard(mutex);
        isMet = true;
        condition.NotifyAll();
    }
    void WaitUntilMet(Event& hasLocked) {
        const ScopedLock guard(mutex);
        hasLocked.Set();
        while (!isMet) {
            condition.Wait(mutex);
        }
    }

    Mutex mutex;
    Condition condition;
    bool isMet GUARDED_BY(mutex) = false;
};

TEST_F(ConditionTest, WakesEveryWaitingThread) {
    Event waiting[2];
    std::thread first([&] { WaitUntilMet(waiting[0]); });
    std::thread second([&] { WaitUntilMet(waiting[1]); });
    EXPECT_TRUE(waiting[0].Wait());
    EXPECT_TRUE(waiting[1].Wait());
    Meet();
    first.join();
    second.join();
}

TEST_F(ConditionTest, WakesBeforeTheTimeIsOver) {
    std::thread other([this] { Meet(); });
    {
        const auto end = Condition::Clock::now() + soon;
        const ScopedLock guard(mutex);
        while (!isMet && condition.WaitUntil(mutex, end)) {
        }
        EXPECT_TRUE(isMet);
    }
    other.join();
}

TEST_F(ConditionTest, SaysThatTheTimeIsOver) {
    const auto end = Condition::Clock::now() + 30ms;
    const ScopedLock guard(mutex);
    while (condition.WaitUntil(mutex, end)) {
    }
    EXPECT_GE(Condition::Clock::now(), end);
}

// A wait that held the mutex would for ever keep out the thread that is to meet the condition.
TEST_F(ConditionTest, LetsOthersInWhenTheSystemDoesNotWait) {
    const SystemFunction<decltype(::SleepConditionVariableSRW)> sleeping(&::SleepConditionVariableSRW, &RefuseToSleep);
    Event hasLocked;
    std::thread waiting([&] { WaitUntilMet(hasLocked); });
    EXPECT_TRUE(hasLocked.Wait());
    Meet();
    waiting.join();
}

}  // namespace
