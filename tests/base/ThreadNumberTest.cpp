// Numbers that each thread has for itself.
#include "base/ThreadNumber.h"

#include <gtest/gtest.h>

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

}  // namespace
