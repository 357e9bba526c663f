// Mutexes.
#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

namespace {

class Mutex : public testing::Test {
protected:
    ~Mutex() override { ::CloseHandle(mutex); }

    // What another thread's wait for the mutex answers at once. That thread gives it back when it had it.
    DWORD OtherThreadsWait() {
        DWORD answer = WAIT_FAILED;
        const auto tryIt = [&answer, this] {
            answer = ::WaitForSingleObject(mutex, 0);
            if (answer == WAIT_OBJECT_0) {
                ::ReleaseMutex(mutex);
            }
        };
        std::thread(tryIt).join();
        return answer;
    }

    const HANDLE mutex = ::CreateMutexA(nullptr, TRUE, nullptr);
};

TEST_F(Mutex, IsOwnedByOneThreadAtATime) {
    EXPECT_EQ(OtherThreadsWait(), DWORD{WAIT_TIMEOUT});
    EXPECT_TRUE(::ReleaseMutex(mutex));
    EXPECT_EQ(OtherThreadsWait(), WAIT_OBJECT_0);
    EXPECT_EQ(::WaitForSingleObject(mutex, INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(OtherThreadsWait(), DWORD{WAIT_TIMEOUT});
    EXPECT_TRUE(::ReleaseMutex(mutex));
}

TEST_F(Mutex, IsReleasedByItsOwnerAlone) {
    std::thread([this] {
        EXPECT_FALSE(::ReleaseMutex(mutex));
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_NOT_OWNER});
    }).join();
    EXPECT_TRUE(::ReleaseMutex(mutex));
    EXPECT_FALSE(::ReleaseMutex(mutex));
}

}  // namespace
