// The process's token.
#include <gtest/gtest.h>
#include <windows.h>

namespace {

class Token : public testing::Test {
protected:
    Token() { EXPECT_TRUE(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token)); }
    ~Token() override { EXPECT_TRUE(::CloseHandle(token)); }

    HANDLE token = nullptr;
    DWORD needed = 0;
};

TEST_F(Token, TellsElevationSessionAndIntegrity) {
    TOKEN_ELEVATION elevation{77};
    EXPECT_TRUE(::GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &needed));
    EXPECT_LE(elevation.TokenIsElevated, 1U);
    EXPECT_EQ(needed, sizeof elevation);
    DWORD session = 0;
    EXPECT_TRUE(::GetTokenInformation(token, TokenSessionId, &session, sizeof session, &needed));
    EXPECT_EQ(needed, sizeof session);
    struct {
        TOKEN_MANDATORY_LABEL label;
        BYTE identifier[SECURITY_MAX_SID_SIZE];
    } integrity{};
    EXPECT_TRUE(::GetTokenInformation(token, TokenIntegrityLevel, &integrity, sizeof integrity, &needed));
    const auto* const identifier = static_cast<const SID*>(integrity.label.Label.Sid);
    EXPECT_EQ(identifier->IdentifierAuthority.Value[5], 16) << "the authority of integrity levels";
    EXPECT_EQ(identifier->SubAuthorityCount, 1);
    EXPECT_GE(identifier->SubAuthority[0], DWORD{SECURITY_MANDATORY_LOW_RID});
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
