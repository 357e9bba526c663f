// Handles are good until they are closed, each for its kind of object.
#include <gtest/gtest.h>
#include <windows.h>

#include <malloc.h>

#include <cstdlib>

namespace {

TEST(Handle, IsRefusedOnceItIsClosed) {
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_TRUE(::CloseHandle(event));
    ::SetLastError(0);
    EXPECT_FALSE(::CloseHandle(event));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_FALSE(::SetEvent(event));
    EXPECT_FALSE(::ResetEvent(event));
    EXPECT_EQ(::WaitForSingleObject(event, 0), WAIT_FAILED);
    DWORD flags = 1;
    EXPECT_FALSE(::GetHandleInformation(event, &flags));
}

TEST(Handle, OfARegistryKeyIsNotAnEvents) {
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, nullptr, 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_FALSE(::SetEvent(key));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    HKEY opened = nullptr;
    EXPECT_EQ(::RegOpenKeyExA(static_cast<HKEY>(event), nullptr, 0, KEY_READ, &opened), ERROR_INVALID_HANDLE);
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
    EXPECT_TRUE(::GetHandleInformation(copy, &flags));
    EXPECT_EQ(flags, 0U);
    EXPECT_EQ(::WaitForSingleObject(copy, 0), WAIT_OBJECT_0);
    ::CloseHandle(copy);
}

TEST(Heap, KnowsItsBlocks) {
    const auto heap = reinterpret_cast<HANDLE>(::_get_heap_handle());
    void* const block = std::malloc(16);
    EXPECT_TRUE(::HeapValidate(heap, 0, block));
    std::free(block);
    EXPECT_FALSE(::HeapValidate(heap, 0, block));
}

}  // namespace
