// Names of policies in the registry, and what is logged of them.
#include <string>

#include "policy/VsMsgbusIEnforcePolicy.h"
#include "support/AgentEnvironment.h"
#include "support/HostLog.h"
#include "support/PolicyValues.h"
#include "support/SystemFunction.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct Row {
    const wchar_t* category;
    const wchar_t* value;
    const char* onSuccess;
    const char* onFailure;
};

constexpr Row rows[] = {
    {L"QTP_General_Policies", L"OASPolicyName", "8 NySpb: Successfully set OASPolicyName ",
     "3 NySpb: Failed to set OASPolicyName"},
    {L"QTP_OnDemandScan_Policies", L"ODSPolicyName", "8 NySpb: Successfully set ODSPolicyName ",
     "3 NySpb: Failed to set ODSPolicyName"},
    {L"QTP_BehaviorBlock_Policies", L"APPolicyName", "8 NySpb: Successfully set APPolicyName ",
     "3 NySpb: Failed to set APPolicyName"},
    {L"QTP_BufferOverflow_Policies", L"EPPolicyName", "8 NySpb: Successfully set EPPolicyName ",
     "3 NySpb: Failed to set EPSPolicyName"},
    {L"QTP_CommonScan_Policies", L"CommonScanPolicyName", "8 NySpb: Successfully set CommonScanPolicyName ",
     "3 NySpb: Failed to set CommonScanPolicyName"},
};

class PolicyName : public AgentTest {
protected:
    // The contents of all five values.
    static std::vector<std::wstring> Values() {
        std::vector<std::wstring> values;
        for (const Row& row : rows) {
            values.push_back(PolicyValues::Read(row.value));
        }
        return values;
    }

    static DWORD OpenHandles() {
        DWORD count = 0;
        EXPECT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &count));
        return count;
    }

    HostLog host;
};

TEST_F(PolicyName, IsStoredForEachOfTheFiveCategoriesAndLogged) {
    PolicyValues::MakeKey();
    std::vector<std::string> expected;
    for (const Row& row : rows) {
        StorePolicyName(row.category, (std::wstring(L"name of ") + row.category).c_str());
        expected.emplace_back(row.onSuccess);
    }
    EXPECT_THAT(Values(), ElementsAre(L"name of QTP_General_Policies", L"name of QTP_OnDemandScan_Policies",
                                      L"name of QTP_BehaviorBlock_Policies", L"name of QTP_BufferOverflow_Policies",
                                      L"name of QTP_CommonScan_Policies"));
    EXPECT_EQ(host.log.Lines(), expected);
}

TEST_F(PolicyName, ThatIsMissingIsLoggedAsAFailureAndTheValueStays) {
    PolicyValues::MakeKey();
    for (const Row& row : rows) {
        StorePolicyName(row.category, L"before");
        host.log.Take();
        StorePolicyName(row.category, nullptr);
        EXPECT_THAT(host.log.Take(), ElementsAre(row.onFailure));
        EXPECT_EQ(PolicyValues::Read(row.value), L"before");
    }
}

TEST_F(PolicyName, IsLoggedFromALineOfItsOwn) {
    PolicyValues::MakeKey();
    for (const Row& row : rows) {
        StorePolicyName(row.category, L"P1");
        StorePolicyName(row.category, nullptr);
    }
    EXPECT_THAT(host.SourceLines(), SizeIs(2 * std::size(rows)));
    EXPECT_THAT(host.Files(), ElementsAre("policy/VsMsgbusIEnforcePolicy.cpp"));
}

TEST_F(PolicyName, IsNeitherStoredNorLoggedWithoutTheKey) {
    StorePolicyName(L"QTP_General_Policies", L"P1");
    StorePolicyName(L"QTP_General_Policies", nullptr);
    EXPECT_FALSE(PolicyValues::HasKey());
    EXPECT_THAT(host.log.Lines(), IsEmpty());
}

TEST_F(PolicyName, IsNotStoredForCategoriesThatAreOnlyAlike) {
    PolicyValues::MakeKey();
    for (const wchar_t* category :
         {L"qtp_general_policies", L"QTP_General_Policies ", L"QTP_General_Policie", L"QTP_General_Policies2", L""}) {
        StorePolicyName(category, L"P1");
    }
    StorePolicyName(nullptr, L"P1");
    StorePolicyName(nullptr, nullptr);
    EXPECT_THAT(Values(), testing::Each(PolicyValues::none));
    EXPECT_THAT(host.log.Lines(), IsEmpty());
}

TEST_F(PolicyName, IsTheLastOneOfItsCategory) {
    PolicyValues::MakeKey();
    StorePolicyName(L"QTP_OnDemandScan_Policies", L"A longer first name");
    StorePolicyName(L"QTP_OnDemandScan_Policies", L"P2");
    EXPECT_EQ(PolicyValues::Read(L"ODSPolicyName"), L"P2");
    EXPECT_THAT(host.log.Lines(),
                ElementsAre("8 NySpb: Successfully set ODSPolicyName ", "8 NySpb: Successfully set ODSPolicyName "));
}

TEST_F(PolicyName, MayBeEmptyLongOrInAnyScript) {
    PolicyValues::MakeKey();
    const std::wstring mebi(1024 * 1024, L'x');
    for (const std::wstring& name : {std::wstring(), mebi, std::wstring(L"\u00FC\u20AC\u7B56"),
                                     std::wstring(L"\U0001F600 outside the basic plane"), std::wstring(L"a\nb\tc")}) {
        StorePolicyName(L"QTP_General_Policies", name.c_str());
        EXPECT_EQ(PolicyValues::Read(L"OASPolicyName"), name);
        EXPECT_THAT(host.log.Take(), ElementsAre("8 NySpb: Successfully set OASPolicyName "));
    }
}

TEST_F(PolicyName, LeavesNoHandleOpen) {
    PolicyValues::MakeKey();
    StorePolicyName(L"QTP_General_Policies", L"P1");
    const DWORD before = OpenHandles();
    for (const Row& row : rows) {
        StorePolicyName(row.category, L"P1");
        StorePolicyName(row.category, nullptr);
    }
    EXPECT_EQ(OpenHandles(), before);
}

// Keeps how values are written. One at a time.
class Writings {
public:
    Writings() { current = this; }

    LineLog log;

private:
    static LSTATUS WINAPI Write(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                                DWORD size) {
        current->log.Add(Narrow(name) + " " + std::to_string(reserved) + " " + std::to_string(type) + " " +
                         std::to_string(size / sizeof(wchar_t)) + " rest " + std::to_string(size % sizeof(wchar_t)));
        return current->writing.original(key, name, reserved, type, data, size);
    }

    static inline Writings* current = nullptr;
    SystemFunction<decltype(::RegSetValueExW)> writing{&::RegSetValueExW, &Write};
};

TEST_F(PolicyName, IsWrittenAsTextWithItsTerminatingZero) {
    PolicyValues::MakeKey();
    const Writings writings;
    StorePolicyName(L"QTP_General_Policies", L"P1");
    StorePolicyName(L"QTP_CommonScan_Policies", L"");
    StorePolicyName(L"QTP_CommonScan_Policies", nullptr);
    EXPECT_THAT(writings.log.Lines(), ElementsAre("OASPolicyName 0 1 3 rest 0", "CommonScanPolicyName 0 1 1 rest 0"));
}

TEST_F(PolicyName, HasADigestWhoseFailureIsLoggedWithItsCode) {
    for (const int32_t code : {705, -1, 0}) {
        LogDigestFailure(code);
    }
    EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: Error 705 getting digest", "8 NySpb: Error -1 getting digest",
                                              "8 NySpb: Error 0 getting digest"));
    EXPECT_THAT(host.Files(), ElementsAre("policy/VsMsgbusIEnforcePolicy.cpp"));
    EXPECT_THAT(host.SourceLines(), SizeIs(1));
}

}  // namespace
