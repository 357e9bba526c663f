// The services that a product names when it enters.
#include "VsMsgbus.h"
#include "support/AgentFunctions.h"
#include "support/BridgeTest.h"
#include "support/OnPurpose.h"

using testing::Contains;
using testing::Not;

namespace {

class Mask : public InstalledAgentTest {
protected:
    // Once the last product in the order of ids is attached again, so are the others that ever will be.
    void UpgradeWithWitness() {
        const Product witness("ZZZ-WITNESS");
        UpgradeAndWait("5.7.1", "full", 1 + (isPropertyExpected ? 1 : 0));
    }

    bool isPropertyExpected = false;
    VsMsgbus* instance = nullptr;
};

TEST_F(Mask, WithoutPropertiesAsksTheAgentForNone) {
    const Product product("PRODUCT1000", nullptr, 0);
    ASSERT_TRUE(product.IsEntered());
    EXPECT_EQ(ny_sim_started_clients(), 1U);
    EXPECT_THAT(AgentCalls(), Not(Contains(registerProvider)));
    UpgradeWithWitness();
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
}

TEST_F(Mask, WithoutPropertiesNeedsNoUnregistration) {
    Product(std::string("PRODUCT1000"), nullptr, 0).Exit();
    EXPECT_THAT(AgentCalls(), Not(Contains(unregisterProvider)));
}

TEST_F(Mask, OfUnknownBitsAloneAsksTheAgentForNothing) {
    const OnPurpose mistakes{"MASK-EMPTY"};
    constexpr uint32_t unknown =
        ~uint32_t{VsMsgbusServiceUpdate | VsMsgbusServiceTask | VsMsgbusServicePolicy | VsMsgbusServiceProperty};
    const Product none("PRODUCT1000", nullptr, 0);
    ny_sim_clear_calls();
    const Product product("PRODUCT2000", nullptr, unknown);
    EXPECT_TRUE(product.IsEntered());
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(Mask, WithUnknownBitsStillNamesTheKnownOnes) {
    const Product product("PRODUCT1000", nullptr, 0x80000000 | 0x1 | VsMsgbusServiceProperty | 0x4000);
    ASSERT_TRUE(product.IsEntered());
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    EXPECT_EQ(ny_sim_call_count(registerProvider), 1U);
}

TEST_F(Mask, OfASecondEntryIsAttachedAtOnceAndForgottenWhenTheAgentStartsAnew) {
    const Product product("PRODUCT1000", nullptr, 0);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
    ASSERT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, nullptr, &instance));
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    UpgradeWithWitness();
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
}

TEST_F(Mask, OfTheFirstEntryStaysWhenASecondNamesLess) {
    const Product product("PRODUCT1000", nullptr, VsMsgbusServiceProperty);
    ASSERT_TRUE(VsMsgbusEntry("PRODUCT1000", 0, nullptr, &instance));
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    isPropertyExpected = true;
    UpgradeWithWitness();
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
}

TEST_F(Mask, IsTakenAnewAfterExit) {
    const Product other("PRODUCT2000", nullptr, 0);
    Product(std::string("PRODUCT1000"), nullptr, 0).Exit();
    const Product product("PRODUCT1000", nullptr, VsMsgbusServiceProperty);
    isPropertyExpected = true;
    UpgradeWithWitness();
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
}

TEST_F(Mask, OfASecondEntryIsAttachedEvenWhenTheFirstWasMadeWithoutAnAgent) {
    environment.RemoveAgent();
    const Product product("PRODUCT1000", nullptr, 0);
    const Product witness("ZZZ-WITNESS");
    environment.InstallAgent("5.7.2");
    ASSERT_TRUE(WatcherCalls(registerProvider));
    ASSERT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, nullptr, &instance));
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
}

}  // namespace
