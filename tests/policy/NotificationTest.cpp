// How the agent's notifications reach the module's enforcer, and what becomes of what it throws.
#include <climits>

#include "../../values/AgentException.h"
#include "policy/PolicyTest.h"
#include "support/OnPurpose.h"
#include "support/ThrowingSink.h"

using corvane::ny::utils::exception;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Notification : public PolicyTest {};

TEST_F(Notification, KeepsTheUriUntilTheModuleIsDone) {
    EXPECT_EQ(Enforce([](IPolicyBag&) { EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 1U); }), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 0U);
    EXPECT_EQ(ny_sim_call_count("ny_policy_uri_add_ref"), 1U);
    EXPECT_EQ(ny_sim_call_count("ny_policy_uri_release"), 1U);
}

TEST_F(Notification, WithoutAnEnforcerAndASinkSucceedsInSilence) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    VsMsgbusExit("PRODUCT9000", nullptr);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Notification, WithoutAProductIsRefusedAtOnce) {
    const EnforcerRegistration registration(productId, enforcer);
    ny_sim_clear_calls();
    EXPECT_EQ(PolicyNotice(productId, nullptr).Answer(), 3);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Notification, IsForTheProductThatTheAgentNames) {
    const EnforcerRegistration registration("PRODUCT2000", enforcer, &modulesSink);
    EXPECT_EQ(PolicyNotice(productId, "PRODUCT2000").Answer(), NY_OK);
    EXPECT_EQ(PolicyNotice(productId, "product2000").Answer(), NY_OK);
    EXPECT_EQ(PolicyNotice(productId, "").Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT2000"));
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: Policy collection was not completed for product id product2000",
                                              "3: Policy collection was not completed for product id "));
}

TEST_F(Notification, WithoutAnEnforcerNamesTheProductInItsOwnLetters) {
    const Product other("\xC3\x9C-%s", nullptr, VsMsgbusServicePolicy);
    EXPECT_EQ(PolicyNotice("\xC3\x9C-%s").Answer(), NY_OK);
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: Policy collection was not completed for product id \xC3\x9C-%s"));
}

TEST_F(Notification, WritesNothingForAnyLogLevel) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": {"x": "1"}}]}])");
    for (const int32_t level : {0, 3, 4, 5, INT_MAX, -1, INT_MIN}) {
        enforcer.getLogLevel = [level] { return level; };
        Walk();
    }
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

class EnforcerThrows : public PolicyTest {
protected:
    const OnPurpose usualMistakes{"CALLBACK-THREW"};
};

// From a callback it is the walk's failure, as when the agent had answered that code.
TEST_F(EnforcerThrows, TheAgentsExceptionFromACallbackOfAWalk) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "N"}])");
    NotingCallbacks callbacks;
    callbacks.answer = [](const std::string&) -> bool { throw exception(77); };
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) {
                  EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
                  EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_BAG), 0U);
                  EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_ITERATOR), 0U);
              }),
              NY_OK);
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre(std::string(iterationLine) + "77"));
}

TEST_F(EnforcerThrows, AndSoDoesTheSink) {
    const OnPurpose mistakes{"EXIT-UNKNOWN", "WALK-OF-OTHER-ID"};
    ThrowingSink throwing;
    VsMsgbusExit("PRODUCT9000", nullptr);
    const Product other("PRODUCT2000", &throwing, VsMsgbusServicePolicy);
    NotingCallbacks callbacks;
    enforcer.enforce = [&](IPolicyBag& bag) {
        ny_sim_fail_call("ny_policy_get", 1, 77, NY_SIM_ONCE);
        EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
        throw exception(78);
    };
    const EnforcerRegistration registration("PRODUCT2000", enforcer, &throwing);
    EXPECT_EQ(PolicyNotice("PRODUCT2000").Answer(), 78);
    EXPECT_EQ(throwing.calls, 2U);
}

}  // namespace
