#pragma once

#include <string>
#include <vector>

#include "VsMsgbus.h"
#include "support/BridgeTest.h"

using ISet = VsKitMsgbus::INYCollectProperties::ISet;

inline constexpr char productId[] = "PRODUCT1000";

// One product in the bridge, the agent there, and no collector yet.
class PropertyTest : public InstalledAgentTest {
protected:
    // The products leave before the machine that they are on goes.
    void TearDown() override {
        product.Exit();
        BridgeTest::TearDown();
    }

    const std::vector<std::string> nothing = {"answer 0"};
    CapturingSink modulesSink;
    Product product{productId, &sink};
};
