// Conversions between UTF-8 and wide text.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace {

std::wstring Widen(const std::string& text) {
    wchar_t wide[20] = {};
    const int size = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide, 20);
    EXPECT_EQ(size, ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0));
    return {wide, static_cast<size_t>(size)};
}

std::string Narrow(const std::wstring& wide) {
    char text[20] = {};
    const int size =
        ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text, 20, nullptr, nullptr);
    return {text, static_cast<size_t>(size)};
}

TEST(Text, GoesToWideAndBack) {
    EXPECT_EQ(Widen("a\x7F"), L"a\x7F");
    EXPECT_EQ(Widen("\xC3\xBC\xE2\x82\xAC"), L"\u00FC\u20AC");
    EXPECT_EQ(Widen("\xF0\x9F\x98\x80"), L"\U0001F600");
    for (const std::string text : {"a", "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\x7F"}) {
        EXPECT_EQ(Narrow(Widen(text)), text);
    }
    const std::string withZero("a\0b", 3);
    EXPECT_EQ(Narrow(Widen(withZero)), withZero);
}

TEST(Text, ThatIsMalformedIsReplaced) {
    EXPECT_EQ(Widen("a\xFFz"), L"a\xFFFDz");
    EXPECT_EQ(Widen("\xC3"), L"\xFFFD");
    EXPECT_EQ(Widen("\xC0\xAF"), L"\xFFFD\xFFFD");
    EXPECT_EQ(Widen("\xF5\x80\x80\x80"), L"\xFFFD\xFFFD\xFFFD\xFFFD");
    EXPECT_EQ(Narrow(L"\xD800"), "\xEF\xBF\xBD");
}

TEST(Text, ThatIsCutOffWithinACharacterIsReplacedOnce) {
    EXPECT_EQ(Widen("\xE2\x82"), L"\xFFFD");
    EXPECT_EQ(Widen("\xF0\x9F\x98"), L"\xFFFD");
    EXPECT_EQ(Widen("\xF0\x9Fyz"), L"\xFFFDyz");
}

TEST(Text, WithoutASizeIncludesItsZero) {
    wchar_t wide[3] = {1, 1, 1};
    EXPECT_EQ(::MultiByteToWideChar(CP_UTF8, 0, "ab", -1, nullptr, 0), 3);
    EXPECT_EQ(::MultiByteToWideChar(CP_UTF8, 0, "ab", -1, wide, 3), 3);
    EXPECT_STREQ(wide, L"ab");
}

TEST(Text, ThatIsEmptyOrDoesNotFitFails) {
    wchar_t wide[1] = {};
    EXPECT_EQ(::MultiByteToWideChar(CP_UTF8, 0, "", 0, wide, 1), 0);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(::MultiByteToWideChar(CP_UTF8, 0, "ab", 2, wide, 1), 0);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

}  // namespace
