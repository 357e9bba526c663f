// Recognising processes that have more rights than an ordinary program of their user.
#include "loglib/ProcessRights.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "support/SystemFunction.h"
#include "support/TokenOfProcess.h"

namespace {

class ProcessRights : public testing::Test {
protected:
    TokenOfProcess token;
};

TEST_F(ProcessRights, AreOrdinaryUpToMediumIntegrity) {
    for (const DWORD integrity : {DWORD{0}, DWORD{SECURITY_MANDATORY_LOW_RID}, DWORD{SECURITY_MANDATORY_MEDIUM_RID}}) {
        token.integrity = integrity;
        EXPECT_FALSE(HasHigherRights()) << integrity;
    }
    token.session = 7;
    EXPECT_FALSE(HasHigherRights());
}

TEST_F(ProcessRights, AreHigherWhereItIsElevated) {
    token.isElevated = true;
    EXPECT_TRUE(HasHigherRights());
}

TEST_F(ProcessRights, AreHigherAboveMediumIntegrity) {
    for (const DWORD integrity : {DWORD{SECURITY_MANDATORY_MEDIUM_RID} + 1, DWORD{SECURITY_MANDATORY_HIGH_RID},
                                  DWORD{SECURITY_MANDATORY_SYSTEM_RID}}) {
        token.integrity = integrity;
        EXPECT_TRUE(HasHigherRights()) << integrity;
    }
}

TEST_F(ProcessRights, AreHigherInTheSessionOfTheServices) {
    token.session = 0;
    EXPECT_TRUE(HasHigherRights());
}

TEST_F(ProcessRights, CountAsHigherWhereTheTokenTellsNothing) {
    for (const TOKEN_INFORMATION_CLASS kind : {TokenElevation, TokenSessionId, TokenIntegrityLevel}) {
        token.refused = kind;
        EXPECT_TRUE(HasHigherRights()) << kind;
    }
}

WINBOOL WINAPI RefuseToken(HANDLE /*process*/, DWORD /*access*/, HANDLE* /*token*/) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

TEST_F(ProcessRights, CountAsHigherWithoutAToken) {
    const SystemFunction<decltype(::OpenProcessToken)> refused(&::OpenProcessToken, &RefuseToken);
    EXPECT_TRUE(HasHigherRights());
}

// The system's own answers, whatever they are on this machine.
class RealRightsOfProcess : public testing::Test {
protected:
    RealRightsOfProcess() { answered = 0; }

    static WINBOOL WINAPI Forward(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID information, DWORD size,
                                  LPDWORD needed) {
        const WINBOOL answer = forwarded(token, kind, information, size, needed);
        answered += answer ? 1 : 0;
        return answer;
    }

    static inline int answered = 0;
    static inline decltype(&::GetTokenInformation) forwarded = nullptr;
};

TEST_F(RealRightsOfProcess, AreAskedForInAWayThatTheSystemAnswers) {
    const SystemFunction<decltype(::GetTokenInformation)> function(&::GetTokenInformation, &Forward);
    forwarded = function.original;
    HasHigherRights();
    EXPECT_EQ(answered, 3);
}

TEST_F(RealRightsOfProcess, AreAskedForWithoutLeavingAHandleOpen) {
    const auto openHandles = [] {
        DWORD count = 0;
        EXPECT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &count));
        return count;
    };
    const bool hasHigherRights = HasHigherRights();
    const DWORD before = openHandles();
    EXPECT_EQ(HasHigherRights(), hasHigherRights);
    EXPECT_EQ(openHandles(), before);
}

}  // namespace
