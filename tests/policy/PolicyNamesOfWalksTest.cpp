// The traces of a walk on the machine: names of policies in the registry, and lines in the host's log.
#include "policy/PolicyTest.h"
#include "support/HostLog.h"
#include "support/OnPurpose.h"
#include "support/PolicyValues.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char knownPolicies[] = R"([
    {"softwareId": "PRODUCT1000", "category": "QTP_General_Policies", "name": "G"},
    {"softwareId": "PRODUCT1000", "category": "QTP_OnDemandScan_Policies", "name": "P1"},
    {"softwareId": "PRODUCT1000", "category": "qtp_commonscan_policies", "name": "of no known category"},
    {"softwareId": "PRODUCT1000", "name": "of no category"},
    {"softwareId": "PRODUCT1000", "category": "QTP_General_Policies", "name": "\u00dc later"},
    {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "category": "QTP_General_Policies", "name": "U"}])";

class PolicyNamesOfWalks : public PolicyTest {
protected:
    void SetUp() override {
        PolicyValues::MakeKey();
        HoldPolicies(knownPolicies);
    }

    static void ExpectNames() {
        EXPECT_EQ(PolicyValues::Read(L"OASPolicyName"), L"\u00DC later");
        EXPECT_EQ(PolicyValues::Read(L"ODSPolicyName"), L"P1");
        EXPECT_EQ(PolicyValues::Read(L"APPolicyName"), PolicyValues::none);
        EXPECT_EQ(PolicyValues::Read(L"EPPolicyName"), PolicyValues::none);
        EXPECT_EQ(PolicyValues::Read(L"CommonScanPolicyName"), PolicyValues::none);
    }

    static void ExpectNoNames() {
        for (const wchar_t* const value : {L"OASPolicyName", L"ODSPolicyName", L"CommonScanPolicyName"}) {
            EXPECT_EQ(PolicyValues::Read(value), PolicyValues::none);
        }
    }

    HostLog hostLog;
};

TEST_F(PolicyNamesOfWalks, AreRecorded) {
    EXPECT_THAT(Walk(), testing::SizeIs(5));
    ExpectNames();
    EXPECT_THAT(hostLog.log.Lines(),
                ElementsAre("8 NySpb: Successfully set OASPolicyName ", "8 NySpb: Successfully set ODSPolicyName ",
                            "8 NySpb: Successfully set OASPolicyName "));
}

TEST_F(PolicyNamesOfWalks, AreRecordedByADumpToo) {
    Enforce([](IPolicyBag& bag) { EXPECT_NE(Dump(bag), ""); });
    ExpectNames();
}

TEST_F(PolicyNamesOfWalks, AreRecordedWhenTheModuleWantsTheContainer) {
    const OnPurpose mistakes{"WALK-REFUSED"};
    Walk([](const std::string& line) { return !line.starts_with("container"); });
    ExpectNoNames();
    EXPECT_THAT(hostLog.log.Lines(), IsEmpty());
}

TEST_F(PolicyNamesOfWalks, AreNotTouchedByUsersWalksAndDigests) {
    Enforce([](IPolicyBag& bag) {
        NotingCallbacks callbacks;
        EXPECT_TRUE(bag.EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN"));
        EXPECT_THAT(callbacks.lines, testing::SizeIs(1));
        EXPECT_EQ(bag.GetDigest("PRODUCT1000"), "");
    });
    ExpectNoNames();
    EXPECT_THAT(hostLog.log.Lines(), IsEmpty());
}

TEST_F(PolicyNamesOfWalks, AreNoReasonForAWalkToEnd) {
    PolicyValues::DeleteKey();
    EXPECT_THAT(Walk(), testing::SizeIs(5));
    EXPECT_FALSE(PolicyValues::HasKey());
    // A known category without a name is a failure of that name alone.
    PolicyValues::MakeKey();
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "category": "QTP_BufferOverflow_Policies", "sections": [{}]}])");
    EXPECT_THAT(Walk(), testing::SizeIs(3));
    EXPECT_EQ(PolicyValues::Read(L"EPPolicyName"), PolicyValues::none);
    EXPECT_THAT(hostLog.log.Lines(), ElementsAre("3 NySpb: Failed to set EPSPolicyName"));
}

TEST_F(PolicyNamesOfWalks, AreJoinedInTheHostsLogByDigestsThatFail) {
    Enforce([](IPolicyBag& bag) {
        for (const int32_t code : {77, -5}) {
            ASSERT_EQ(ny_sim_fail_call("ny_policy_uri_get_pso_digest", 2, code, NY_SIM_ONCE), NY_OK);
            EXPECT_EQ(bag.GetDigest("PRODUCT1000"), "");
        }
    });
    EXPECT_THAT(hostLog.log.Lines(),
                ElementsAre("8 NySpb: Error 77 getting digest", "8 NySpb: Error -5 getting digest"));
}

}  // namespace
