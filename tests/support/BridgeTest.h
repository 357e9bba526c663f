#pragma once

#include <windows.h>

#include <string>

#include "support/AgentCalls.h"
#include "support/AgentEnvironment.h"
#include "support/AgentRequest.h"
#include "support/CapturingSink.h"
#include "support/Collector.h"
#include "support/Event.h"
#include "support/Product.h"
#include "support/WatchedAgent.h"

// A test of a module with one property and a log sink. When it ends, no library of the agent is left loaded.
class BridgeTest : public AgentTest {
protected:
    void TearDown() override {
        AgentIsLetGo();
        AgentTest::TearDown();
        for (const char* library : {"ny_client.dll", "ny_variant.dll", "ny_msgbus.dll", "ny_logger.dll"}) {
            EXPECT_EQ(::GetModuleHandleA(library), nullptr) << library;
        }
    }

    // Ask's result for a product with this collector.
    const std::vector<std::string> answered = {"answer 0", "general:version=1.0"};
    const std::vector<std::string> notAsked = {"answer " + std::to_string(NY_SIM_NOT_REGISTERED)};

    // Returns when the watcher has restarted the client and attached `products` products to the service that has this
    // function of the agent's for it.
    void UpgradeAndWait(const std::string& version, const std::string& build = "full", size_t products = 1,
                        const char* registering = "ny_property_register_provider_callback") {
        ny_sim_clear_calls();
        environment.UpgradeAgent(version, build);
        ASSERT_TRUE(WatcherCalls(registering, products));
    }

    CapturingSink sink;
    Collector collector{[](VsKitMsgbus::INYCollectProperties::ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    }};
};

// The same with an agent that is there from the beginning.
class InstalledAgentTest : public BridgeTest {
protected:
    InstalledAgentTest() { environment.InstallAgent(); }
};

// The same with one product in the bridge for these services. The product leaves before the agent is removed.
class ProductTest : public InstalledAgentTest {
protected:
    explicit ProductTest(uint32_t services) : product("PRODUCT1000", &sink, services) {}

    void TearDown() override {
        product.Exit();
        BridgeTest::TearDown();
    }

    CapturingSink modulesSink;
    Product product;
};
