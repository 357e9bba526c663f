// The locks that a thread holds are counted in the checking builds.
#include <gtest/gtest.h>

#include <thread>

#include "base/CallGate.h"
#include "base/Mutex.h"
#include "base/OwnerLock.h"
#include "support/HeldLocks.h"

namespace {

template <class Lock>
void ExpectCounted() {
    Lock lock;
    EXPECT_EQ(HeldLocks(), 0U);
    {
        const ScopedLock guard(lock);
        EXPECT_EQ(HeldLocks(), 1U);
        std::thread([] { EXPECT_EQ(HeldLocks(), 0U); }).join();
        Lock another;
        const ScopedLock guardOfAnother(another);
        EXPECT_EQ(HeldLocks(), 2U);
    }
    EXPECT_EQ(HeldLocks(), 0U);
}

TEST(HeldLocks, AreCountedWhateverTheirKind) {
    ExpectCounted<Mutex>();
    ExpectCounted<CriticalSection>();
    ExpectCounted<OwnerLock>();
}

TEST(HeldLocks, AreNotThoseThatItWaitsWithout) {
    Mutex mutex;
    Condition condition;
    const auto end = Condition::Clock::now() + std::chrono::milliseconds(1);
    const ScopedLock guard(mutex);
    while (condition.WaitUntil(mutex, end)) {
        EXPECT_EQ(HeldLocks(), 1U);
    }
    EXPECT_EQ(HeldLocks(), 1U);
}

TEST(HeldLocks, DoNotIncludeItsTurnAtAGate) {
    CallGate gate;
    const CallGate::Call call(gate, CallGate::Admission::OneThreadAtATime);
    EXPECT_EQ(HeldLocks(), 0U);
}

}  // namespace
