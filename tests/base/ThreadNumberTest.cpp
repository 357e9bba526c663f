// Numbers that each thread has for itself.
#include "base/ThreadNumber.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <new>
#include <thread>
#include <vector>

namespace {

TEST(ThreadNumber, IsEachThreadsOwn) {
    ThreadNumber number;
    number.Prepare();
    EXPECT_EQ(number.Get(), 0U);
    EXPECT_TRUE(number.Set(2));
    std::thread([&number] {
        EXPECT_EQ(number.Get(), 0U);
        EXPECT_TRUE(number.Set(1));
    }).join();
    number.Prepare();
    EXPECT_EQ(number.Get(), 2U) << "preparing again changes nothing";
}

TEST(ThreadNumber, WithoutRoomIsZeroAndCannotBeSet) {
    ThreadNumber number;
    EXPECT_EQ(number.Get(), 0U);
    EXPECT_FALSE(number.Set(1));
    EXPECT_EQ(number.Get(), 0U);
}

TEST(ThreadNumber, ThatTheSystemHasNoRoomForIsRefused) {
    std::vector<DWORD> taken;
    for (DWORD index = ::TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = ::TlsAlloc()) {
        taken.push_back(index);
    }
    ThreadNumber number;
    EXPECT_THROW(number.Prepare(), std::bad_alloc);
    EXPECT_FALSE(number.Set(1));
    for (const DWORD index : taken) {
        ::TlsFree(index);
    }
    number.Prepare();
    EXPECT_TRUE(number.Set(1));
}

// In more rounds than the system has room for: a thread that comes second must give its room back.
TEST(ThreadNumber, PreparedByTwoThreadsAtOnceTakesOneRoom) {
    constexpr int rounds = 20000;
    std::unique_ptr<ThreadNumber> number;
    std::atomic<int> met = 0;
    // Threads that slept would seldom come at once.
    const auto meet = [&met](int times) {
        ++met;
        while (met < 2 * times) {
            std::this_thread::yield();
        }
    };
    const auto prepare = [&](bool isFirst) {
        for (int round = 0; round < rounds; ++round) {
            if (isFirst) {
                number = std::make_unique<ThreadNumber>();
            }
            meet(2 * round + 1);
            EXPECT_NO_THROW(number->Prepare());
            meet(2 * round + 2);
        }
    };
    std::thread other([&] { prepare(false); });
    prepare(true);
    other.join();
}

}  // namespace
