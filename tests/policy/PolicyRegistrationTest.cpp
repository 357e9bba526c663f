// A product's registration with the agent for policies.
#include "policy/PolicyTest.h"

using testing::ElementsAre;

namespace {

class PolicyRegistration : public PolicyTest {};

TEST_F(PolicyRegistration, IsForEveryKindOfNotification) {
    EXPECT_EQ(ny_sim_policy_mask(productId), 63U);
    UpgradeAndWait("5.7.1", "full", 1, registerPolicies);
    EXPECT_EQ(ny_sim_policy_mask(productId), 63U);
}

TEST_F(PolicyRegistration, ComesAfterThatOfProperties) {
    ny_sim_clear_calls();
    const Product both("PRODUCT3000", nullptr, VsMsgbusServicePolicy | VsMsgbusServiceProperty);
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_property_register_provider_callback", registerPolicies));
}

}  // namespace
