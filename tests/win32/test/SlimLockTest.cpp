// Slim locks and condition variables.
#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

namespace {

class SlimLock : public testing::Test {
protected:
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE condition = CONDITION_VARIABLE_INIT;
};

TEST_F(SlimLock, KeepsOthersOut) {
    int number = 0;
    const auto count = [&] {
        for (int i = 0; i < 1000; ++i) {
            ::AcquireSRWLockExclusive(&lock);
            ++number;
            ::ReleaseSRWLockExclusive(&lock);
        }
    };
    std::thread other(count);
    count();
    other.join();
    EXPECT_EQ(number, 2000);
}

TEST_F(SlimLock, IsLeftForTheTimeOfASleepAndTakenAgain) {
    bool isMet = false;
    ::AcquireSRWLockExclusive(&lock);
    std::thread other([&] {
        ::AcquireSRWLockExclusive(&lock);
        isMet = true;
        ::WakeAllConditionVariable(&condition);
        ::ReleaseSRWLockExclusive(&lock);
    });
    while (!isMet) {
        EXPECT_TRUE(::SleepConditionVariableSRW(&condition, &lock, INFINITE, 0));
    }
    ::ReleaseSRWLockExclusive(&lock);
    other.join();
}

TEST_F(SlimLock, SleepWithoutAWakeUpEndsWithTheTime) {
    ::AcquireSRWLockExclusive(&lock);
    EXPECT_FALSE(::SleepConditionVariableSRW(&condition, &lock, 1, 0));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_TIMEOUT});
    ::ReleaseSRWLockExclusive(&lock);
}

}  // namespace
