// Variables of the environment.
#include <gtest/gtest.h>
#include <windows.h>

namespace {

constexpr wchar_t variableName[] = L"WIN32_LAYER_TEST";

class Environment : public testing::Test {
protected:
    ~Environment() override { ::SetEnvironmentVariableW(variableName, nullptr); }

    wchar_t value[10] = {};
};

TEST_F(Environment, GivesBackWhatWasSetUntilItIsTakenAway) {
    EXPECT_TRUE(::SetEnvironmentVariableW(variableName, L"a \u20AC"));
    EXPECT_EQ(::GetEnvironmentVariableW(variableName, value, 10), 3U);
    EXPECT_STREQ(value, L"a \u20AC");
    EXPECT_TRUE(::SetEnvironmentVariableW(variableName, nullptr));
    EXPECT_EQ(::GetEnvironmentVariableW(variableName, value, 10), 0U);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ENVVAR_NOT_FOUND});
}

TEST_F(Environment, SaysHowMuchRoomAValueNeeds) {
    ::SetEnvironmentVariableW(variableName, L"abc");
    EXPECT_EQ(::GetEnvironmentVariableW(variableName, nullptr, 0), 4U);
    EXPECT_EQ(::GetEnvironmentVariableW(variableName, value, 3), 4U);
    EXPECT_EQ(::GetEnvironmentVariableW(variableName, value, 4), 3U);
    EXPECT_STREQ(value, L"abc");
}

TEST_F(Environment, FindsAVariableInAnyCase) {
    ::SetEnvironmentVariableW(variableName, L"abc");
    EXPECT_EQ(::GetEnvironmentVariableW(L"Win32_Layer_Test", value, 10), 3U);
    EXPECT_TRUE(::SetEnvironmentVariableW(L"win32_layer_test", L"de"));
    EXPECT_EQ(::GetEnvironmentVariableW(variableName, value, 10), 2U);
    EXPECT_TRUE(::SetEnvironmentVariableW(L"win32_layer_test", nullptr));
    EXPECT_EQ(::GetEnvironmentVariableW(variableName, value, 10), 0U);
}

TEST_F(Environment, HasNoVariableWithoutAName) {
    EXPECT_EQ(::GetEnvironmentVariableW(L"", value, 10), 0U);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ENVVAR_NOT_FOUND});
    EXPECT_FALSE(::SetEnvironmentVariableW(nullptr, L"x"));
}

}  // namespace
