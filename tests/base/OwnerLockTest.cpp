// The lock that says which thread holds it.
#include "base/OwnerLock.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/Event.h"

namespace {

TEST(OwnerLock, NamesTheThreadInsideAndNoneOnceItIsFree) {
    OwnerLock lock;
    EXPECT_EQ(lock.OwnerThreadId(), 0U);
    {
        const ScopedLock guard(lock);
        EXPECT_EQ(lock.OwnerThreadId(), ::GetCurrentThreadId());
    }
    EXPECT_EQ(lock.OwnerThreadId(), 0U);
}

TEST(OwnerLock, NamesTheThreadInsideToOthers) {
    OwnerLock lock;
    Event inside;
    Event leave;
    DWORD threadId = 0;
    std::thread holder([&] {
        const ScopedLock guard(lock);
        threadId = ::GetCurrentThreadId();
        inside.Set();
        leave.Wait();
    });
    ASSERT_TRUE(inside.Wait());
    EXPECT_EQ(lock.OwnerThreadId(), threadId);
    leave.Set();
    holder.join();
    EXPECT_EQ(lock.OwnerThreadId(), 0U);
}

TEST(OwnerLock, LetsOneThreadInAtATime) {
    OwnerLock lock;
    int counter = 0;
    int strangers = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 1000; ++round) {
                const ScopedLock guard(lock);
                ++counter;
                strangers += lock.OwnerThreadId() != ::GetCurrentThreadId() ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(counter, 8000);
    EXPECT_EQ(strangers, 0);
}

TEST(CriticalSection, MayBeEnteredAgainByTheirOwner) {
    CriticalSection section;
    Event entered;
    section.Lock();
    section.Lock();
    section.Unlock();
    std::thread other([&] {
        const ScopedLock guard(section);
        entered.Set();
    });
    EXPECT_FALSE(entered.IsSet());
    section.Unlock();
    EXPECT_TRUE(entered.Wait());
    other.join();
}

}  // namespace
