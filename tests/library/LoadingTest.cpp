// The DLL as a file: loaded and unloaded at run time.
#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(Library, LoadsAndUnloads) {
    const HMODULE library = ::LoadLibraryA("VsMsgbus.dll");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(::GetProcAddress(library, "VsMsgbusEntry"), nullptr);
    EXPECT_TRUE(::FreeLibrary(library));
    EXPECT_EQ(::GetModuleHandleA("VsMsgbus.dll"), nullptr);
}

}  // namespace
