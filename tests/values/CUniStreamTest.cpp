// The wide text builder with which every message is composed.
#include "values/CUniStream.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <climits>

#include "support/FailingMemory.h"

namespace {

using VsKit::CUniStream;

class CUniStreamTest : public testing::Test {
protected:
    const std::wstring& Text() const { return stream.Text(); }

    CUniStream stream;
};

TEST_F(CUniStreamTest, IsEmptyAndGoodAtFirst) {
    EXPECT_EQ(Text(), L"");
    EXPECT_TRUE(stream.IsGood());
}

TEST_F(CUniStreamTest, AppendsInOrder) {
    stream << L"policy [" << "name" << L"] " << 42 << std::wstring_view(L"wide...", 4) << std::string_view("narrow", 3);
    EXPECT_EQ(Text(), L"policy [name] 42widenar");
}

TEST_F(CUniStreamTest, AppendsNothingForNullAndEmptyTexts) {
    stream << L"a" << static_cast<const char*>(nullptr) << static_cast<const wchar_t*>(nullptr) << "" << L""
           << std::string_view() << std::wstring_view() << L"b";
    EXPECT_EQ(Text(), L"ab");
    EXPECT_TRUE(stream.IsGood());
}

TEST_F(CUniStreamTest, WidensUtf8) {
    stream << "\xC3\xBC|\xE2\x82\xAC|\xF0\x9F\x98\x80";
    EXPECT_EQ(Text(), L"\u00FC|\u20AC|\xD83D\xDE00");
}

TEST_F(CUniStreamTest, WidensInvalidUtf8AsTheSystemDoes) {
    const std::string invalid = "a\xFF\xC3(b\xE2\x82";
    wchar_t expected[32] = {};
    const int length =
        ::MultiByteToWideChar(CP_UTF8, 0, invalid.data(), static_cast<int>(invalid.size()), expected, 32);
    ASSERT_GT(length, 0);
    stream << invalid;
    EXPECT_EQ(Text(), std::wstring(expected, static_cast<size_t>(length)));
    EXPECT_NE(Text().find(L'\xFFFD'), std::wstring::npos);
    EXPECT_TRUE(stream.IsGood());
}

TEST_F(CUniStreamTest, KeepsAZeroInANarrowText) {
    stream << std::string_view("a\0b", 3);
    EXPECT_EQ(Text(), std::wstring(L"a\0b", 3));
}

TEST_F(CUniStreamTest, WidensATextLongerThanAnyFixedBuffer) {
    stream << std::string(100000, 'x');
    EXPECT_EQ(Text(), std::wstring(100000, L'x'));
}

TEST_F(CUniStreamTest, WritesIntegersInDecimal) {
    stream << 0 << L" " << -1 << L" " << INT32_MIN << L" " << INT32_MAX;
    EXPECT_EQ(Text(), L"0 -1 -2147483648 2147483647");
}

TEST_F(CUniStreamTest, WritesOneIntegerInHexadecimalAfterHex) {
    stream.Hex() << 0xBEEF << L" " << 10;
    EXPECT_EQ(Text(), L"0x0000beef 10");
}

TEST_F(CUniStreamTest, KeepsHexOverTextsUpToTheNextInteger) {
    stream.Hex() << L"[" << "x" << -1 << L"]";
    stream << 7;
    stream.Hex().Hex() << 0 << 0;
    EXPECT_EQ(Text(), L"[x0xffffffff]70x000000000");
}

TEST_F(CUniStreamTest, KeepsTheThreadsLastError) {
    ::SetLastError(4711);
    stream << "narrow"
           << "\xFF\xFE";
    EXPECT_EQ(::GetLastError(), 4711U);
}

TEST_F(CUniStreamTest, StopsAppendingWhenItFindsNoMemory) {
    const std::string longNarrow(1000, 'n');
    const std::wstring longWide(1000, L'w');
    for (const bool isNarrow : {true, false}) {
        CUniStream starved;
        starved << L"before";
        {
            const FailingMemory none;
            isNarrow ? starved << longNarrow : starved << longWide;
        }
        EXPECT_FALSE(starved.IsGood());
        starved << L" after" << "after" << 1;
        EXPECT_EQ(starved.Text(), L"before");
    }
}

// Nothing of a text of that length is read.
TEST_F(CUniStreamTest, StopsAppendingAtANarrowTextThatIsTooLongToBeWidened) {
    stream << L"before" << std::string_view("x", size_t{INT_MAX} + 1) << L" after";
    EXPECT_FALSE(stream.IsGood());
    EXPECT_EQ(Text(), L"before");
}

}  // namespace
