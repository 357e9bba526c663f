// The system's texts for its errors.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace {

TEST(ErrorText, IsThereForCodesThatTheSystemHas) {
    char text[200] = {};
    constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = ::FormatMessageA(flags, nullptr, ERROR_MOD_NOT_FOUND, 0, text, sizeof text, nullptr);
    EXPECT_EQ(length, std::string(text).size());
    EXPECT_TRUE(std::string(text).ends_with(".\r\n")) << text;
    EXPECT_EQ(::FormatMessageA(flags, nullptr, 0x2FFFFFFF, 0, text, sizeof text, nullptr), 0U);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_MR_MID_NOT_FOUND});
}

TEST(ErrorText, ThatDoesNotFitFails) {
    char text[4] = {};
    EXPECT_EQ(::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_MOD_NOT_FOUND, 0, text, sizeof text, nullptr),
              0U);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

}  // namespace
