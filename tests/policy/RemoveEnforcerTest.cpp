// Taking an enforcer back inside a callback that other services do not have.
#include "policy/PolicyTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;

namespace {

class RemoveEnforcer : public PolicyTest {};

TEST_F(RemoveEnforcer, InsideGetLogLevelIsTheLastOfIt) {
    const OnPurpose mistakes{"REMOVE-INSIDE", "REMOVE-UNKNOWN"};
    enforcer.getLogLevel = [] {
        EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId));
        return 4;
    };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel"));
}

TEST_F(RemoveEnforcer, InsideACallbackOfAWalkReturnsAtOnce) {
    const OnPurpose mistakes{"REMOVE-INSIDE", "REMOVE-UNKNOWN"};
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": {"x": "1"}}]}])");
    const Lines lines = Walk([](const std::string&) { return VsKitMsgbusRemoveEnforcerPolicy(wideId); });
    EXPECT_EQ(lines.size(), 4U);
}

}  // namespace
