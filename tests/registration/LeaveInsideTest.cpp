// Products enter and leave, and the agent changes, while a module is being called.
#include "registration/RegistrationTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <typename Service>
class LeaveInside : public RegistrationTest<Service> {
protected:
    // In its first call the module leaves with the last product and calls `act`. From then on the object that it was
    // lent must give nothing.
    void LeaveAndThen(std::function<void()> act) {
        this->module.act = [this, act = std::move(act)] {
            this->product.Exit();
            this->module.lentWorks = false;
            act();
        };
    }

    RegisteredModule<Service> registration{productId, this->module};
};
TYPED_TEST_SUITE(LeaveInside, AllServices, ServiceNames);

TYPED_TEST(LeaveInside, OfTheLastProductEndsTheBridgeUnderTheModule) {
    this->LeaveAndThen(
        [] { EXPECT_NE(::GetModuleHandleA("ny_client.dll"), nullptr) << "the agent's thread returns into it"; });
    EXPECT_EQ(this->OutcomeOf(), TypeParam::left);
    this->ExpectUnknownToAgent();
    EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
    EXPECT_TRUE(AgentIsLetGo());
}

TYPED_TEST(LeaveInside, OfTheLastProductAndThenAnExceptionIsAnsweredWithoutALine) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    this->LeaveAndThen([] { throw 42; });
    EXPECT_EQ(this->OutcomeOf(), TypeParam::leftAndFailed);
    EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
    EXPECT_TRUE(AgentIsLetGo());
}

// The object that the module was lent belongs to the client that is gone.
TYPED_TEST(LeaveInside, CanBeFollowedByEntryInsideTheSameModule) {
    VsMsgbus* instance = nullptr;
    this->LeaveAndThen([&] { EXPECT_TRUE(VsMsgbusEntry(otherId, TypeParam::mask, nullptr, &instance)); });
    EXPECT_EQ(this->OutcomeOf(), TypeParam::left);
    EXPECT_FALSE(TypeParam::IsKnownToAgent(productId));
    EXPECT_TRUE(TypeParam::IsKnownToAgent(otherId));
    EXPECT_TRUE(VsMsgbusExit(otherId, instance));
}

TYPED_TEST(LeaveInside, OfOneOfTwoProductsLeavesTheModuleWorking) {
    const Product staying(otherId, nullptr, TypeParam::mask);
    this->module.act = [this] { this->product.Exit(); };
    EXPECT_EQ(this->OutcomeOf(), TypeParam::called);
    this->ExpectUnknownToAgent();
}

TYPED_TEST(LeaveInside, OfAnotherProductLeavesTheModuleWorking) {
    Product other(otherId, nullptr, TypeParam::mask);
    this->module.act = [&] { other.Exit(); };
    this->ExpectCalled(this->module);
    this->ExpectUnknownToAgent(otherId);
    this->ExpectCalled(this->module);
}

TYPED_TEST(LeaveInside, IsNotDoneByEntryOfAnotherProduct) {
    VsMsgbus* instance = nullptr;
    this->module.act = [&] { EXPECT_TRUE(VsMsgbusEntry(otherId, TypeParam::mask, nullptr, &instance)); };
    EXPECT_EQ(this->OutcomeOf(), TypeParam::called);
    EXPECT_EQ(instance, this->product.Instance());
    EXPECT_TRUE(TypeParam::IsKnownToAgent(otherId));
    EXPECT_TRUE(VsMsgbusExit(otherId, instance));
}

// The agent lets go of a product when no call of it runs any more.
TYPED_TEST(LeaveInside, OnAnotherThreadReturnsWhenTheModuleIsOut) {
    this->Block();
    const typename TypeParam::Request request(productId);
    ASSERT_TRUE(this->held.isInside.Wait());
    Event isUnregistering;
    const AgentHook hook(TypeParam::unregistering, [&] { isUnregistering.Set(); });
    std::thread leaver([&] {
        this->product.Exit();
        this->order.Add("left");
    });
    EXPECT_TRUE(isUnregistering.Wait());
    this->held.mayGoOn.Set();
    leaver.join();
    EXPECT_EQ(TypeParam::OutcomeOf(request), TypeParam::called);
    EXPECT_THAT(this->order.Lines(), ElementsAre("module is out", "left"));
}

TYPED_TEST(LeaveInside, OnAThreadThatTheModuleStartsReturnsWhenTheModuleIsOut) {
    std::thread leaver;
    Event isUnregistering;
    const AgentHook hook(TypeParam::unregistering, [&] { isUnregistering.Set(); });
    this->module.act = [&] {
        leaver = std::thread([this] { this->product.Exit(); });
        EXPECT_TRUE(isUnregistering.Wait());
    };
    EXPECT_EQ(this->OutcomeOf(), TypeParam::called);
    leaver.join();
}

TYPED_TEST(LeaveInside, OfTheAgentWaitsForTheModuleAndIsFollowedByItsReturn) {
    this->Block();
    const typename TypeParam::Request request(productId);
    ASSERT_TRUE(this->held.isInside.Wait());
    Event isUnregistering;
    const AgentHook unregistering(TypeParam::unregistering, [&] { isUnregistering.Set(); });
    const AgentHook releasing("ny_client_handler_release", [&] { this->order.Add("client is released"); });
    ny_sim_clear_calls();
    this->environment.UpgradeAgent("5.7.1");
    ASSERT_TRUE(SeenByWatcher([&](auto limit) { return isUnregistering.Wait(limit); }));
    this->held.mayGoOn.Set();
    EXPECT_EQ(TypeParam::OutcomeOf(request), TypeParam::called);
    ASSERT_TRUE(WaitForAgentCalls(TypeParam::registering));
    EXPECT_EQ(this->OutcomeOf(), TypeParam::called);
    EXPECT_THAT(this->order.Take(), ElementsAre("module is out", "client is released", "module is out"));
}

template <typename Service>
class LeaveInsideWithTurns : public LeaveInside<Service> {};
TYPED_TEST_SUITE(LeaveInsideWithTurns, ServicesWithTurns, ServiceNames);

// The second request is at the bridge's door when the first one's module leaves, and the agent waits for it to go away:
// it must not wait for the module that waits in Exit.
TYPED_TEST(LeaveInsideWithTurns, TurnsAwayARequestThatWaitsForItsTurn) {
    ny_sim_clear_calls();
    this->module.act = [this] {
        EXPECT_TRUE(WaitForAgentCalls("ny_variant_release", TypeParam::releasesBeforeSecondTurn));
        this->product.Exit();
        this->module.lentWorks = false;
    };
    const typename TypeParam::Request first(productId);
    const typename TypeParam::Request second(productId);
    EXPECT_EQ(first.Answer(), NY_OK);
    EXPECT_EQ(second.Answer(), NY_OK);
    EXPECT_TRUE(AgentIsLetGo());
}

}  // namespace
