// Giving the bridge an enforcer and taking it back, and the product's registration with the agent.
#include "policy/PolicyTest.h"
#include "support/KeptHandles.h"
#include "support/Services.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class EnforcerTableTest : public PolicyTest {};

TEST_F(EnforcerTableTest, TakesAnEnforcerBeforeEntry) {
    const EnforcerRegistration registration("PRODUCT2000", enforcer);
    const Product late("PRODUCT2000", nullptr, VsMsgbusServicePolicy);
    EXPECT_EQ(PolicyNotice("PRODUCT2000").Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT2000"));
}

TEST_F(EnforcerTableTest, CallsNoAgent) {
    ny_sim_clear_calls();
    EnforcerRegistration registration(productId, enforcer);
    registration.Remove();
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(EnforcerTableTest, RefusesNull) {
    EXPECT_FALSE(VsKitMsgbusSetEnforcePolicy(nullptr, &enforcer, &modulesSink));
    EXPECT_FALSE(VsKitMsgbusSetEnforcePolicy(wideId, nullptr, &modulesSink));
    EXPECT_FALSE(VsKitMsgbusSetEnforcePolicy(nullptr, nullptr, nullptr));
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
}

TEST_F(EnforcerTableTest, KeepsTheFirstEnforcerOfAnId) {
    Enforcer second;
    EnforcerRegistration first(productId, enforcer);
    EXPECT_TRUE(VsKitMsgbusSetEnforcePolicy(wideId, &second, nullptr));
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
    first.Remove();
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(second.log.Lines(), IsEmpty());
}

TEST_F(EnforcerTableTest, TakesAnotherEnforcerAfterRemove) {
    Enforcer second;
    EnforcerRegistration(productId, enforcer).Remove();
    const EnforcerRegistration registration(productId, second);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
    EXPECT_THAT(second.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
}

TEST_F(EnforcerTableTest, TellsIdsApartByCase) {
    const EnforcerRegistration registration("product1000", enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
}

TEST_F(EnforcerTableTest, AnswersTrueForTheRemovalOfAnything) {
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(L""));
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(L"PRODUCT9000"));
}

TEST_F(EnforcerTableTest, IsNotTheCollectors) {
    const Registration ofCollector(productId, collector);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId));
    EXPECT_THAT(collector.log.Lines(), IsEmpty());
}

TEST_F(EnforcerTableTest, OutlivesUpgradesAndExits) {
    const EnforcerRegistration registration(productId, enforcer);
    UpgradePolicies("5.7.1");
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    product.Exit();
    const Product again(productId, nullptr, VsMsgbusServicePolicy);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), testing::SizeIs(4));
}

class PolicyRegistration : public PolicyTest {
protected:
    static Lines RegistrationCalls() {
        Lines calls = AgentCalls();
        std::erase_if(calls, [](const std::string& call) { return !call.ends_with("register_notification_callback"); });
        return calls;
    }
};

TEST_F(PolicyRegistration, IsForEveryKindOfNotification) {
    EXPECT_EQ(ny_sim_policy_mask(productId), 63U);
    EXPECT_THAT(RegistrationCalls(), ElementsAre(registerPolicies));
}

TEST_F(PolicyRegistration, IsMadeOnceForEachProduct) {
    VsMsgbus* instance = nullptr;
    EXPECT_TRUE(VsMsgbusEntry(productId, VsMsgbusServicePolicy, nullptr, &instance));
    const Product other("PRODUCT2000", nullptr, VsMsgbusServicePolicy);
    EXPECT_THAT(RegistrationCalls(), ElementsAre(registerPolicies, registerPolicies));
    product.Exit();
    EXPECT_EQ(ny_sim_has_policy_callback(productId), 0);
    EXPECT_EQ(ny_sim_has_policy_callback("PRODUCT2000"), 1);
    EXPECT_THAT(RegistrationCalls(), ElementsAre(registerPolicies, registerPolicies, unregisterPolicies));
}

TEST_F(PolicyRegistration, IsMadeForTheBitOfTheMaskAlone) {
    const Product other("PRODUCT2000", nullptr, ~uint32_t{VsMsgbusServicePolicy});
    EXPECT_EQ(ny_sim_has_policy_callback("PRODUCT2000"), 0);
    const Product both("PRODUCT3000", nullptr, VsMsgbusServicePolicy | VsMsgbusServiceProperty);
    EXPECT_EQ(ny_sim_has_policy_callback("PRODUCT3000"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT3000"), 1);
    EXPECT_EQ(ny_sim_has_property_provider(productId), 0);
}

TEST_F(PolicyRegistration, ComesAfterThatOfProperties) {
    ny_sim_clear_calls();
    const Product both("PRODUCT3000", nullptr, VsMsgbusServicePolicy | VsMsgbusServiceProperty);
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_property_register_provider_callback", registerPolicies));
}

TEST_F(PolicyRegistration, IsMadeAgainAfterAnUpgrade) {
    UpgradePolicies("5.7.1");
    EXPECT_THAT(RegistrationCalls(), ElementsAre(unregisterPolicies, registerPolicies));
    EXPECT_EQ(ny_sim_policy_mask(productId), 63U);
}

class PolicyRegistrationFault : public PolicyRegistration, public testing::WithParamInterface<int32_t> {
protected:
    std::string Code() const { return std::to_string(GetParam()); }
};

TEST_P(PolicyRegistrationFault, IsTheAnswerOfEntry) {
    ASSERT_EQ(ny_sim_fail_call(registerPolicies, 1, GetParam(), NY_SIM_ONCE), NY_OK);
    const Product refused("PRODUCT2000", nullptr, VsMsgbusServicePolicy);
    EXPECT_FALSE(refused.IsEntered());
    EXPECT_EQ(ny_sim_has_policy_callback("PRODUCT2000"), 0);
    VsMsgbus* instance = nullptr;
    EXPECT_TRUE(VsMsgbusEntry("PRODUCT2000", VsMsgbusServicePolicy, nullptr, &instance)) << "asked for again";
    EXPECT_EQ(ny_sim_has_policy_callback("PRODUCT2000"), 1);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_P(PolicyRegistrationFault, AtTheLastExitIsTakenBackWithTheClient) {
    KeptHandles kept;
    ASSERT_EQ(ny_sim_fail_call(unregisterPolicies, 1, GetParam(), NY_SIM_FROM_THEN_ON), NY_OK);
    product.Exit();
    EXPECT_EQ(ny_sim_has_policy_callback(productId), 0);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    ny_sim_clear_faults();
    const Product again(productId, nullptr, VsMsgbusServicePolicy);
    EXPECT_TRUE(again.IsEntered());
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
}

TEST_P(PolicyRegistrationFault, AtAnUpgradeKeepsNobodyFromTheNewAgent) {
    ASSERT_EQ(ny_sim_fail_call(unregisterPolicies, 1, GetParam(), NY_SIM_ONCE), NY_OK);
    const EnforcerRegistration registration(productId, enforcer);
    UpgradePolicies("5.7.1");
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
    EXPECT_THAT(sink.log.Lines(), ElementsAre(NotReleasedLine(4096, Code())));
}

INSTANTIATE_TEST_SUITE_P(Code, PolicyRegistrationFault, testing::Values(77, -5, 1, 705), NameOfCode);

}  // namespace
