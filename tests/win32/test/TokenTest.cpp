// The process's token.
#include <gtest/gtest.h>
#include <windows.h>

#include "win32_faults.h"

namespace {

class Token : public testing::Test {
protected:
    Token() { EXPECT_TRUE(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token)); }
    ~Token() override {
        EXPECT_TRUE(::CloseHandle(token));
        EXPECT_EQ(win32::OpenHandles(), before);
    }

    const size_t before = win32::OpenHandles();
    HANDLE token = nullptr;
    DWORD needed = 0;
};

TEST_F(Token, IsThatOfAnOrdinaryProgram) {
    TOKEN_ELEVATION elevation{77};
    EXPECT_TRUE(::GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &needed));
    EXPECT_EQ(elevation.TokenIsElevated, 0U);
    DWORD session = 77;
    EXPECT_TRUE(::GetTokenInformation(token, TokenSessionId, &session, sizeof session, &needed));
    EXPECT_EQ(session, 1U);
    struct {
        TOKEN_MANDATORY_LABEL label;
        BYTE identifier[SECURITY_MAX_SID_SIZE];
    } integrity{};
    EXPECT_TRUE(::GetTokenInformation(token, TokenIntegrityLevel, &integrity, sizeof integrity, &needed));
    const auto* const identifier = static_cast<const SID*>(integrity.label.Label.Sid);
    EXPECT_EQ(identifier->SubAuthorityCount, 1);
    EXPECT_EQ(identifier->SubAuthority[0], SECURITY_MANDATORY_MEDIUM_RID);
}

TEST_F(Token, SaysHowMuchRoomItNeeds) {
    TOKEN_MANDATORY_LABEL label{};
    EXPECT_FALSE(::GetTokenInformation(token, TokenIntegrityLevel, &label, sizeof label, &needed));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_GT(needed, sizeof label);
}

TEST_F(Token, IsNoOtherHandle) {
    DWORD session = 0;
    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    EXPECT_FALSE(::GetTokenInformation(event, TokenSessionId, &session, sizeof session, &needed));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_TRUE(::CloseHandle(event));
}

}  // namespace
