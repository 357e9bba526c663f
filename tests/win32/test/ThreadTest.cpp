// Threads, their ids and ends, and critical sections.
#include <gtest/gtest.h>
#include <windows.h>

#include <thread>

namespace {

DWORD WINAPI StoreId(LPVOID place) {
    *static_cast<DWORD*>(place) = ::GetCurrentThreadId();
    return 0;
}

TEST(Thread, HasAnIdOfItsOwnThatItsCreatorIsTold) {
    DWORD seen = 0;
    DWORD told = 0;
    const HANDLE thread = ::CreateThread(nullptr, 0, StoreId, &seen, 0, &told);
    ASSERT_EQ(::WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(seen, told);
    EXPECT_NE(seen, ::GetCurrentThreadId());
    EXPECT_EQ(::GetCurrentThreadId(), ::GetCurrentThreadId());
    EXPECT_NE(::GetCurrentThreadId(), 0U);
    ::CloseHandle(thread);
}

TEST(Thread, RunsOnWhenItsHandleIsClosed) {
    const HANDLE event = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const HANDLE thread = ::CreateThread(
        nullptr, 0, [](LPVOID set) { return static_cast<DWORD>(::SetEvent(set)); }, event, 0, nullptr);
    ::CloseHandle(thread);
    EXPECT_EQ(::WaitForSingleObject(event, INFINITE), WAIT_OBJECT_0);
    ::CloseHandle(event);
}

DWORD WINAPI Leave(LPVOID library) {
    ::FreeLibraryAndExitThread(static_cast<HMODULE>(library), 0);
}

TEST(Thread, LeavesWithTheLastReferenceOnALibrary) {
    const HMODULE library = ::LoadLibraryA("win32_sample.dll");
    ASSERT_NE(library, nullptr);
    const HANDLE thread = ::CreateThread(nullptr, 0, Leave, library, 0, nullptr);
    EXPECT_EQ(::WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(::GetModuleHandleA("win32_sample.dll"), nullptr);
    ::CloseHandle(thread);
}

TEST(Thread, HasRoomOfItsOwnThatIsGivenBack) {
    const DWORD first = ::TlsAlloc();
    const DWORD second = ::TlsAlloc();
    EXPECT_NE(first, second);
    EXPECT_TRUE(::TlsFree(second));
    EXPECT_TRUE(::TlsFree(first));
    EXPECT_FALSE(::TlsFree(first));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(::TlsAlloc(), first);
    EXPECT_TRUE(::TlsFree(first));
}

TEST(Thread, HasValuesOfItsOwn) {
    const DWORD index = ::TlsAlloc();
    int value = 0;
    EXPECT_EQ(::TlsGetValue(index), nullptr);
    EXPECT_TRUE(::TlsSetValue(index, &value));
    EXPECT_EQ(::TlsGetValue(index), &value);
    std::thread([index] { EXPECT_EQ(::TlsGetValue(index), nullptr); }).join();
    EXPECT_TRUE(::TlsSetValue(index, nullptr));
    EXPECT_EQ(::TlsGetValue(index), nullptr);
    EXPECT_TRUE(::TlsFree(index));
}

DWORD WINAPI ExchangeLastError(LPVOID place) {
    *static_cast<DWORD*>(place) = ::GetLastError();
    ::SetLastError(8);
    return 0;
}

TEST(Thread, HasALastErrorOfItsOwn) {
    DWORD first = 77;
    ::SetLastError(7);
    const HANDLE thread = ::CreateThread(nullptr, 0, ExchangeLastError, &first, 0, nullptr);
    ::WaitForSingleObject(thread, INFINITE);
    EXPECT_EQ(::GetLastError(), 7U);
    EXPECT_EQ(first, 0U);
    ::CloseHandle(thread);
}

TEST(Thread, EntersACriticalSectionAgainAndKeepsOthersOut) {
    CRITICAL_SECTION section;
    EXPECT_TRUE(::InitializeCriticalSectionAndSpinCount(&section, 10));
    int counter = 0;
    const auto count = [&] {
        for (int i = 0; i < 1000; ++i) {
            ::EnterCriticalSection(&section);
            ::EnterCriticalSection(&section);
            ++counter;
            ::LeaveCriticalSection(&section);
            ::LeaveCriticalSection(&section);
        }
    };
    {
        const std::jthread first(count);
        const std::jthread second(count);
    }
    EXPECT_EQ(counter, 2000);
    ::DeleteCriticalSection(&section);
}

}  // namespace
