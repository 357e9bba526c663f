// Taking an enforcer back inside a callback that other services do not have.
#include "policy/PolicyTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;

namespace {

class RemoveEnforcer : public PolicyTest {};

TEST_F(RemoveEnforcer, InsideACallbackOfAWalkReturnsAtOnce) {
    const OnPurpose mistakes{"REMOVE-INSIDE", "REMOVE-UNKNOWN"};
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": {"x": "1"}}]}])");
    const Lines lines = Walk([](const std::string&) { return VsKitMsgbusRemoveEnforcerPolicy(wideId); });
    EXPECT_EQ(lines.size(), 4U);
}

}  // namespace
