// Handles are counted, and good until they are closed.
#include <gtest/gtest.h>
#include <windows.h>

#include "win32_faults.h"

namespace {

TEST(Handle, IsRefusedOnceItIsClosedAndIsNotGivenAgain) {
    const size_t before = win32::OpenHandles();
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_EQ(win32::OpenHandles(), before + 1);
    EXPECT_TRUE(::CloseHandle(event));
    EXPECT_EQ(win32::OpenHandles(), before);
    const HANDLE next = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_NE(next, event);
    ::SetLastError(0);
    EXPECT_FALSE(::CloseHandle(event));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_FALSE(::SetEvent(event));
    EXPECT_FALSE(::ResetEvent(event));
    EXPECT_EQ(::WaitForSingleObject(event, 0), WAIT_FAILED);
    ::CloseHandle(next);
}

TEST(Handle, OfARegistryKeyIsNotAnEvents) {
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, nullptr, 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(win32::OpenRegistryKeys(), 1U);
    EXPECT_FALSE(::CloseHandle(key));
    EXPECT_FALSE(::SetEvent(key));
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(win32::OpenRegistryKeys(), 0U);
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_EQ(::RegCloseKey(static_cast<HKEY>(event)), ERROR_INVALID_HANDLE);
    ::CloseHandle(event);
}

TEST(Handle, ThatIsDuplicatedStandsForTheSameObject) {
    const HANDLE event = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    HANDLE copy = nullptr;
    ASSERT_TRUE(::DuplicateHandle(::GetCurrentProcess(), event, ::GetCurrentProcess(), &copy, SYNCHRONIZE, FALSE, 0));
    EXPECT_NE(copy, event);
    ::SetEvent(event);
    ::CloseHandle(event);
    DWORD flags = 1;
    EXPECT_FALSE(::GetHandleInformation(event, &flags));
    EXPECT_TRUE(::GetHandleInformation(copy, &flags));
    EXPECT_EQ(::WaitForSingleObject(copy, 0), WAIT_OBJECT_0);
    ::CloseHandle(copy);
}

TEST(Handle, IsCountedForTheProcess) {
    DWORD before = 0;
    DWORD after = 0;
    ASSERT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &before));
    const HANDLE event = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    ASSERT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &after));
    EXPECT_EQ(after, before + 1);
    ::CloseHandle(event);
}

TEST(Heap, KnowsItsBlocks) {
    const auto heap = reinterpret_cast<HANDLE>(::_get_heap_handle());
    void* const block = std::malloc(16);
    EXPECT_TRUE(::HeapValidate(heap, 0, block));
    std::free(block);
    EXPECT_FALSE(::HeapValidate(heap, 0, block));
}

}  // namespace
