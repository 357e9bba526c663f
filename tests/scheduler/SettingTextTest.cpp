// Texts of settings that no JSON holds.
#include "scheduler/SettingText.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

TEST(SettingText, IsABooleanUpToItsFirstZero) {
    EXPECT_TRUE(IsBooleanText("TRUE\0X"s));
    EXPECT_TRUE(IsBooleanText("false\0"s));
    EXPECT_FALSE(IsBooleanText("\0TRUE"s));
    EXPECT_FALSE(IsBooleanText("T\xFCRUE"));
    EXPECT_FALSE(IsBooleanText("{rue"));
    EXPECT_FALSE(IsBooleanText("@rue"));
}

TEST(SettingText, IsANumberUpToItsFirstZero) {
    EXPECT_EQ(NumberOfText("1\0002"s), 1);
    EXPECT_EQ(NumberOfText("\0001"s), 0);
    EXPECT_EQ(NumberOfText("\xFC"), 0);
    EXPECT_EQ(NumberOfText(std::string(1000000, '9')), 2147483647);
}
