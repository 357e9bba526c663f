// What the layer counts as open. It counts what programs hold; the system also counts what its own libraries hold.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <filesystem>

#include "RegistryFixture.h"
#include "win32_faults.h"

namespace {

class OpenHandleCount : public RegistryFixture {
protected:
    // How many handles more are open than at first.
    size_t Grown() const { return win32::OpenHandles() - before; }

    const size_t before = win32::OpenHandles();
};

TEST_F(OpenHandleCount, GrowsWithEventsFilesAndTokens) {
    const std::filesystem::path log = testing::TempDir() + "count-" + std::to_string(::GetCurrentProcessId());
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_EQ(Grown(), 1U);
    const HANDLE file =
        ::CreateFileW(log.wstring().c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_EQ(Grown(), 2U);
    HANDLE token = nullptr;
    ::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token);
    EXPECT_EQ(Grown(), 3U);
    DWORD count = 0;
    ASSERT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &count));
    EXPECT_EQ(count, before + 3);
    for (const HANDLE handle : {event, file, token}) {
        ::CloseHandle(handle);
    }
    EXPECT_EQ(Grown(), 0U);
    std::filesystem::remove(log);
}

TEST_F(OpenHandleCount, HasTheRegistrysKeysApart) {
    const size_t keys = win32::OpenRegistryKeys();
    const HKEY opened = Create(key, "A");
    EXPECT_EQ(win32::OpenRegistryKeys(), keys + 1);
    EXPECT_EQ(Grown(), 1U);
    ::RegCloseKey(opened);
    EXPECT_EQ(win32::OpenRegistryKeys(), keys);
}

TEST(LibraryReferenceCount, GrowsWithEachLoading) {
    const size_t before = win32::LibraryReferences();
    const HMODULE first = ::LoadLibraryA("win32_sample.dll");
    const HMODULE second = ::LoadLibraryA("win32_sample.dll");
    EXPECT_EQ(win32::LibraryReferences(), before + 2);
    ::FreeLibrary(first);
    ::FreeLibrary(second);
    EXPECT_EQ(win32::LibraryReferences(), before);
}

[[noreturn]] void PinWithoutAReference() {
    const HMODULE library = ::LoadLibraryA("win32_sample.dll");
    HMODULE pinned = nullptr;
    ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN, "win32_sample.dll", &pinned);
    ::FreeLibrary(library);
    std::exit(pinned == library && win32::LibraryReferences() == 0 ? 42 : 1);
}

TEST(LibraryReferenceCount, LeavesOutAPinnedLibrary) {
    EXPECT_EXIT(PinWithoutAReference(), testing::ExitedWithCode(42), "");
}

}  // namespace
