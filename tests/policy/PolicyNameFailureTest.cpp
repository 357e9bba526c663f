// Names of policies where the registry, the memory or the host's log fails.
#include <stdexcept>

#include "policy/VsMsgbusIEnforcePolicy.h"
#include "support/AgentEnvironment.h"
#include "support/FailingMemory.h"
#include "support/HostLog.h"
#include "support/PolicyValues.h"
#include "support/SystemFunction.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PolicyNameFailure : public AgentTest {
protected:
    PolicyNameFailure() { PolicyValues::MakeKey(); }
};

LSTATUS WINAPI RefuseToOpen(HKEY /*parent*/, const wchar_t* /*path*/, DWORD /*options*/, REGSAM /*access*/,
                            HKEY* /*key*/) {
    return ERROR_ACCESS_DENIED;
}

LSTATUS WINAPI RefuseToWrite(HKEY /*key*/, const wchar_t* /*name*/, DWORD /*reserved*/, DWORD /*type*/,
                             const BYTE* /*data*/, DWORD /*size*/) {
    return ERROR_ACCESS_DENIED;
}

TEST_F(PolicyNameFailure, ToWriteTheValueIsLogged) {
    HostLog host;
    {
        const SystemFunction<decltype(::RegSetValueExW)> refusing(&::RegSetValueExW, &RefuseToWrite);
        StorePolicyName(L"QTP_BufferOverflow_Policies", L"P1");
        StorePolicyName(L"QTP_CommonScan_Policies", L"P1");
    }
    EXPECT_THAT(host.log.Take(),
                ElementsAre("3 NySpb: Failed to set EPSPolicyName", "3 NySpb: Failed to set CommonScanPolicyName"));
    EXPECT_EQ(PolicyValues::Read(L"EPPolicyName"), PolicyValues::none);
    StorePolicyName(L"QTP_BufferOverflow_Policies", L"P1");
    EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: Successfully set EPPolicyName "));
}

TEST_F(PolicyNameFailure, ToOpenTheKeyIsNotLogged) {
    const HostLog host;
    const SystemFunction<decltype(::RegOpenKeyExW)> refusing(&::RegOpenKeyExW, &RefuseToOpen);
    StorePolicyName(L"QTP_General_Policies", L"P1");
    EXPECT_THAT(host.log.Lines(), IsEmpty());
    EXPECT_EQ(PolicyValues::Read(L"OASPolicyName"), PolicyValues::none);
}

TEST_F(PolicyNameFailure, OfMemoryLosesTheEventAndNotTheName) {
    const HostLog host;
    {
        const FailingMemory memory;
        StorePolicyName(L"QTP_General_Policies", L"P1");
        LogDigestFailure(705);
    }
    EXPECT_EQ(PolicyValues::Read(L"OASPolicyName"), L"P1");
    EXPECT_THAT(host.log.Lines(), IsEmpty());
}

class ThrowingListener final : public LogUtils::LogListener {
    void OnLogEvent(const LogUtils::LogRecord& /*event*/) override { throw std::runtime_error("not today"); }
};

TEST_F(PolicyNameFailure, OfTheLogsListenerIsDropped) {
    ThrowingListener listener;
    getLogManager()->SetListener(&listener);
    StorePolicyName(L"QTP_General_Policies", L"P1");
    StorePolicyName(L"QTP_General_Policies", nullptr);
    LogDigestFailure(705);
    EXPECT_EQ(getLogManager()->SetListener(nullptr), &listener);
    EXPECT_EQ(PolicyValues::Read(L"OASPolicyName"), L"P1");
}

}  // namespace
