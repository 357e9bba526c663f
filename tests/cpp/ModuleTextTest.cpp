// Texts of the C++ layer.
#include <gtest/gtest.h>

#include "vsmsgbus.hpp"

namespace {

TEST(ModuleText, IsConvertedBothWays) {
    // One, two, three and four bytes of UTF-8; the last is a pair of units where a unit has 16 bits.
    constexpr std::string_view utf8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    const std::wstring wide = L"a\u00E9\u20AC\U0001F600";
    EXPECT_EQ(vsmsgbus::Wide(utf8), wide);
    EXPECT_EQ(vsmsgbus::Utf8(wide), utf8);
    EXPECT_EQ(vsmsgbus::Wide(""), L"");
    EXPECT_EQ(vsmsgbus::Utf8(L""), "");
}

TEST(ModuleText, HasAReplacementForWhatIsNotValid) {
    EXPECT_EQ(vsmsgbus::Wide("a\x80z"), L"a\uFFFDz") << "continuation alone";
    EXPECT_EQ(vsmsgbus::Wide("a\xC3"), L"a\uFFFD") << "cut off";
    EXPECT_EQ(vsmsgbus::Wide("a\xE2z"), L"a\uFFFDz") << "cut off in the middle";
    EXPECT_EQ(vsmsgbus::Wide("\xC0\x80"), L"\uFFFD") << "longer than needed";
    EXPECT_EQ(vsmsgbus::Wide("\xED\xA0\x80"), L"\uFFFD") << "half of a pair";
    EXPECT_EQ(vsmsgbus::Wide("\xF4\x90\x80\x80"), L"\uFFFD") << "beyond the last character";
    EXPECT_EQ(vsmsgbus::Wide("\xFF"), L"\uFFFD");
    EXPECT_EQ(vsmsgbus::Utf8(std::wstring{L'a', static_cast<wchar_t>(0xD83D), L'z'}), "a\xEF\xBF\xBDz")
        << "first half alone";
    EXPECT_EQ(vsmsgbus::Utf8(std::wstring{static_cast<wchar_t>(0xDE00)}), "\xEF\xBF\xBD") << "second half alone";
}

TEST(ModuleText, IsTakenAsAnyKindOfText) {
    const auto same = [](const vsmsgbus::Text& text) { return std::wstring(text.Terminated()); };
    EXPECT_EQ(same("text"), L"text");
    EXPECT_EQ(same(L"text"), L"text");
    EXPECT_EQ(same(std::string("text")), L"text");
    EXPECT_EQ(same(std::wstring(L"text")), L"text");
    EXPECT_EQ(same(std::string_view("text and more").substr(0, 4)), L"text");
    EXPECT_EQ(same(std::wstring_view(L"text and more").substr(0, 4)), L"text");
    EXPECT_EQ(same(static_cast<const char*>(nullptr)), L"");
    EXPECT_EQ(same(static_cast<const wchar_t*>(nullptr)), L"");
}

}  // namespace
