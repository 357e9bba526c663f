// What the bridge locks and waits with.
#include "base/Mutex.h"

#include <gmock/gmock.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include "support/Event.h"
#include "support/LineLog.h"
#include "support/SystemFunction.h"

namespace {

using namespace std::chrono_literals;

TEST(Mutex, KeepsOthersOut) {
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
TEST(Mutex, WakesWhoSleepsForIt) {
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

TEST(Mutex, IsHandedFromOneSleeperToTheNext) {
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
TEST(Mutex, MayBeDestroyedByWhoeverIsLetInLast) {
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

TEST(Mutex, KeepsOthersOutWhenTheSystemDoesNotLetThemSleep) {
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
