#pragma once

#include <string>
#include <vector>

#include "VsMsgbus.h"
#include "support/BridgeTest.h"

using ISet = VsKitMsgbus::INYCollectProperties::ISet;

inline constexpr char productId[] = "PRODUCT1000";

// One product in the bridge, the agent there, and no collector yet.
class PropertyTest : public ProductTest {
protected:
    PropertyTest() : ProductTest(VsMsgbusServiceProperty) {}

    const std::vector<std::string> nothing = {"answer 0"};
};
