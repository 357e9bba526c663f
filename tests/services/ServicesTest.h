#pragma once

#include <string>

#include "VsMsgbus.h"
#include "support/BridgeTest.h"

// A product in the bridge, named to no service.
class ServicesTest : public InstalledAgentTest {
protected:
    // The products leave before the machine that they are on goes.
    void TearDown() override {
        product.Exit();
        BridgeTest::TearDown();
    }

    // Returns when the bridge has let go of the agent, whose key is still there.
    void LoseAgent() {
        environment.Installer().DeleteVersion();
        ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
        sink.log.Take();
    }

    Product product{"PRODUCT1000", &sink, 0};
};

inline constexpr int32_t faultCodes[] = {77, -5, NY_INVALID_ARGUMENT, NY_FUNCTION_MISSING};
