// Events and waits.
#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

namespace {

class Wait : public testing::Test {
protected:
    ~Wait() override {
        ::CloseHandle(manual);
        ::CloseHandle(automatic);
    }

    DWORD ForAny(DWORD milliseconds) {
        const HANDLE handles[] = {manual, automatic};
        return ::WaitForMultipleObjects(2, handles, FALSE, milliseconds);
    }

    const HANDLE manual = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const HANDLE automatic = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
};

TEST_F(Wait, EndsAtTheTimeWithoutASignal) {
    EXPECT_EQ(::WaitForSingleObject(manual, 0), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(::WaitForSingleObject(manual, 1), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(ForAny(1), DWORD{WAIT_TIMEOUT});
}

TEST_F(Wait, LeavesAManualEventAsItIsAndResetsAnAutomaticOne) {
    ::SetEvent(manual);
    ::SetEvent(automatic);
    ::SetEvent(automatic);
    EXPECT_EQ(::WaitForSingleObject(manual, 0), WAIT_OBJECT_0);
    EXPECT_EQ(::WaitForSingleObject(manual, 0), WAIT_OBJECT_0);
    EXPECT_EQ(::WaitForSingleObject(automatic, 0), WAIT_OBJECT_0);
    EXPECT_EQ(::WaitForSingleObject(automatic, 0), DWORD{WAIT_TIMEOUT});
    ::ResetEvent(manual);
    EXPECT_EQ(::WaitForSingleObject(manual, 0), DWORD{WAIT_TIMEOUT});
}

TEST_F(Wait, ForAnyTakesTheFirstInOrder) {
    ::SetEvent(automatic);
    EXPECT_EQ(ForAny(INFINITE), WAIT_OBJECT_0 + 1);
    ::SetEvent(manual);
    ::SetEvent(automatic);
    EXPECT_EQ(ForAny(INFINITE), WAIT_OBJECT_0);
    ::ResetEvent(manual);
    EXPECT_EQ(ForAny(0), WAIT_OBJECT_0 + 1) << "what was not taken is still there";
}

TEST_F(Wait, IsEndedByAnotherThread) {
    for (const HANDLE event : {manual, automatic}) {
        std::jthread setter([event] {
            ::Sleep(1);
            ::SetEvent(event);
        });
        EXPECT_EQ(ForAny(INFINITE), event == manual ? WAIT_OBJECT_0 : WAIT_OBJECT_0 + 1);
        ::ResetEvent(event);
    }
}

TEST_F(Wait, OfTwoThreadsForAnAutomaticEventEndsOncePerSignal) {
    std::jthread first([this] { EXPECT_EQ(::WaitForSingleObject(automatic, INFINITE), WAIT_OBJECT_0); });
    std::jthread second([this] { EXPECT_EQ(::WaitForSingleObject(automatic, INFINITE), WAIT_OBJECT_0); });
    ::SetEvent(automatic);
    // The second signal must not fall together with the first.
    while (::WaitForSingleObject(automatic, 0) == WAIT_OBJECT_0) {
        ::SetEvent(automatic);
        std::this_thread::yield();
    }
    ::SetEvent(automatic);
}

TEST_F(Wait, FailsForWhatCannotBeWaitedFor) {
    EXPECT_EQ(::WaitForSingleObject(nullptr, 0), WAIT_FAILED);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(::WaitForMultipleObjects(0, nullptr, FALSE, 0), WAIT_FAILED);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

}  // namespace
