// This Win32 layer refuses some calls that the system may allow: a test that relied on them would hide a mistake.
#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(Strict, TheValueOfAClosedHandleIsNotReused) {
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    ::CloseHandle(event);
    const HANDLE next = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_NE(next, event);
    EXPECT_FALSE(::SetEvent(event));
    ::CloseHandle(next);
}

TEST(Strict, HandlesAreClosedByTheFunctionOfTheirKind) {
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, nullptr, 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_FALSE(::CloseHandle(key));
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_EQ(::RegCloseKey(static_cast<HKEY>(event)), ERROR_INVALID_HANDLE);
    EXPECT_TRUE(::CloseHandle(event));
    EXPECT_FALSE(::CloseHandle(::GetCurrentProcess()));
}

TEST(Strict, WaitingForAllIsNotSupported) {
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_DEATH(::WaitForMultipleObjects(1, &event, TRUE, 0), "does not support waiting for all");
    ::CloseHandle(event);
}

TEST(Strict, LibrariesAreNotLoadedWithOtherFlags) {
    EXPECT_EQ(::LoadLibraryExA("win32_sample.dll", nullptr, DONT_RESOLVE_DLL_REFERENCES), nullptr);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

}  // namespace
