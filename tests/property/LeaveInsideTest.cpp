// Products enter and leave, and the agent changes, while a collector is being asked.
#include <thread>

#include "property/PropertyTest.h"
#include "support/AgentFunctions.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LeaveInside : public PropertyTest {
protected:
    // A collector that is inside from `isInside` until `mayLeave`.
    void Block() {
        collector.collect = [this](ISet& set) {
            isInside.Set();
            EXPECT_TRUE(mayLeave.Wait());
            EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
            order.Add("collector is out");
        };
    }

    Event isInside;
    Event mayLeave;
    LineLog order;
};

TEST_F(LeaveInside, OfTheLastProductEndsTheBridgeUnderTheCollector) {
    collector.collect = [this](ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
        product.Exit();
        EXPECT_NE(::GetModuleHandleA("ny_client.dll"), nullptr) << "the agent's thread returns into it";
        EXPECT_FALSE(set.SetProperty(L"path", L"name", L"value"));
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre("5: Failed to add property for name= value, exception 705"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)", "GetLogLevel"));
    EXPECT_EQ(Ask(productId), notAsked);
}

TEST_F(LeaveInside, OfTheLastProductAndThenAnExceptionIsAnsweredWithoutALine) {
    collector.collect = [this](ISet&) {
        product.Exit();
        throw 42;
    };
    const Registration registration(productId, collector);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 3"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(LeaveInside, CanBeFollowedByEntryInsideTheSameCollector) {
    collector.collect = [this](ISet&) {
        product.Exit();
        VsMsgbus* instance = nullptr;
        EXPECT_TRUE(VsMsgbusEntry("PRODUCT2000", VsMsgbusServiceProperty, nullptr, &instance));
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), nothing);
    const Product other("PRODUCT2000");
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT2000"), 1);
}

// The bag is of the client that is gone.
TEST_F(LeaveInside, AndEntryInsideTheSameCollectorLeaveTheSetterRefusing) {
    VsMsgbus* instance = nullptr;
    collector.collect = [&](ISet& set) {
        product.Exit();
        EXPECT_TRUE(VsMsgbusEntry("PRODUCT2000", VsMsgbusServiceProperty, nullptr, &instance));
        ny_sim_clear_calls();
        EXPECT_FALSE(set.SetProperty(L"path", L"name", L"value"));
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre("5: Failed to add property for name= value, exception 705"));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT2000", instance));
}

TEST_F(LeaveInside, OfOneOfTwoProductsLeavesTheSetterWorking) {
    const Product staying("PRODUCT2000");
    collector.collect = [this](ISet& set) {
        product.Exit();
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask(productId), notAsked);
}

TEST_F(LeaveInside, OfAnotherProduct) {
    Product other("PRODUCT2000");
    collector.collect = [&](ISet& set) {
        other.Exit();
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask("PRODUCT2000"), notAsked);
    EXPECT_EQ(Ask(productId), answered);
}

TEST_F(LeaveInside, AndEnterAnotherProduct) {
    VsMsgbus* instance = nullptr;
    collector.collect = [&](ISet& set) {
        EXPECT_TRUE(VsMsgbusEntry("PRODUCT2000", VsMsgbusServiceProperty, nullptr, &instance));
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(instance, product.Instance());
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT2000"), 1);
    EXPECT_TRUE(VsMsgbusExit("PRODUCT2000", instance));
}

// The second request is at the bridge's door when the first one's collector leaves, and the agent waits for it to go
// away: it must not wait for the collector that waits in Exit.
TEST_F(LeaveInside, WhileAnotherRequestWaitsForItsTurn) {
    ny_sim_clear_calls();
    collector.collect = [this](ISet&) {
        EXPECT_TRUE(WaitForAgentCalls("ny_variant_release", 2));
        product.Exit();
    };
    const Registration registration(productId, collector);
    const AgentRequest first(productId);
    const AgentRequest second(productId);
    EXPECT_EQ(first.Answer(), NY_OK);
    EXPECT_EQ(second.Answer(), NY_OK);
}

// The agent lets go of a product when no callback of it runs any more.
TEST_F(LeaveInside, OnAnotherThreadReturnsWhenTheCollectorIsOut) {
    Block();
    const Registration registration(productId, collector);
    const AgentRequest request(productId);
    ASSERT_TRUE(isInside.Wait());
    Event isUnregistering;
    const AgentHook hook(unregisterProvider, [&] { isUnregistering.Set(); });
    std::thread leaver([&] {
        product.Exit();
        order.Add("left");
    });
    EXPECT_TRUE(isUnregistering.Wait());
    mayLeave.Set();
    leaver.join();
    EXPECT_THAT(request.Properties(), ElementsAre("general:version=1.0"));
    EXPECT_THAT(order.Lines(), ElementsAre("collector is out", "left"));
}

TEST_F(LeaveInside, OfTheAgentWaitsForTheCollectorAndIsFollowedByItsReturn) {
    Block();
    const Registration registration(productId, collector);
    const AgentRequest request(productId);
    ASSERT_TRUE(isInside.Wait());
    Event isUnregistering;
    const AgentHook unregistering(unregisterProvider, [&] { isUnregistering.Set(); });
    const AgentHook releasing("ny_client_handler_release", [&] { order.Add("client is released"); });
    ny_sim_clear_calls();
    environment.UpgradeAgent("5.7.1");
    ASSERT_TRUE(SeenByWatcher([&](auto limit) { return isUnregistering.Wait(limit); }));
    mayLeave.Set();
    EXPECT_THAT(request.Properties(), ElementsAre("general:version=1.0"));
    EXPECT_EQ(request.Answer(), NY_OK);
    ASSERT_TRUE(WaitForAgentCalls("ny_property_register_provider_callback"));
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_THAT(order.Take(), ElementsAre("collector is out", "client is released", "collector is out"));
}

}  // namespace
