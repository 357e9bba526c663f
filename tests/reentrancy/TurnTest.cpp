// A callback that waits for its turn with a module's record, while the thread inside that record waits for the
// callback: neither may hang.
#include <gmock/gmock.h>

#include <optional>

#include "reentrancy/World.h"
#include "support/AgentCalls.h"
#include "support/AgentRequest.h"
#include "support/AgentUpdate.h"
#include "support/Event.h"
#include "support/PolicyNotice.h"
#include "support/Watchdog.h"

namespace {

// A callback into a record that lets one thread in at a time.
struct OneAtATime {
    const char* name;
    ny_sim_callback call;
    void (*trigger)();
};

constexpr OneAtATime callbacksOneAtATime[] = {
    {"CollectProperties", NY_SIM_CALL_PROPERTIES, [] { AgentRequest(ReentrancyWorld::product).Answer(); }},
    {"EnforcePolicy", NY_SIM_CALL_POLICY, [] { PolicyNotice(ReentrancyWorld::product).Answer(); }},
    {"UpdateNotify", NY_SIM_CALL_UPDATE_NOTIFY, [] { AgentUpdate(NotifyCall(ReentrancyWorld::product)).Answer(); }},
};

void PrintTo(const OneAtATime& callback, std::ostream* stream) {
    *stream << callback.name;
}

class Turn : public testing::Test {
protected:
    void SetUp() override {
        world.hasOtherProduct = true;
        world.PutAgent();
        world.EnterAll();
    }
    void TearDown() override {
        ny_sim_set_one_lock(0);
        world.LeaveAll();
        world.ExpectNothingLeft();
    }

    const Watchdog watchdog{"a turn"};
    ReentrancyWorld world;
};

class TurnInRegister : public Turn, public testing::WithParamInterface<OneAtATime> {};

// Inside register the agent calls the product on another thread, and waits for it.
TEST_P(TurnInRegister, IsNotWaitedForWhenTheThreadInsideTheRecordIsTheOneThatRegisters) {
    ASSERT_EQ(ny_sim_call_in_register(GetParam().call, NY_SIM_ON_OTHER_THREAD), NY_OK);
    world.trap.Set(GetParam().name, L"", [this] {
        world.ExitProduct();
        EXPECT_TRUE(world.EnterProduct());
    });
    GetParam().trigger();
    EXPECT_TRUE(world.trap.HasSprung());
    EXPECT_EQ(ny_sim_register_call_count(), 1U);
    ny_sim_call_in_register(GetParam().call, NY_SIM_NO_CALL);
    world.trap.Clear();
    EXPECT_EQ(AgentRequest(ReentrancyWorld::product).Answer(), NY_OK);
}

INSTANTIATE_TEST_SUITE_P(Reentrancy, TurnInRegister, testing::ValuesIn(callbacksOneAtATime),
                         [](const testing::TestParamInfo<OneAtATime>& test) { return test.param.name; });

// The agent's thread waits for its turn with the agent's lock held, which the thread inside the record needs next.
TEST_F(Turn, IsNotWaitedForByACallbackThatHoldsWhatTheThreadInsideTheRecordWaitsFor) {
    Event isCalledAgain;
    std::optional<PolicyNotice> second;
    world.trap.Set("EnforcePolicy", L"", [&] {
        ny_sim_set_one_lock(1);
        const AgentHook hook("ny_policy_uri_add_ref", [&] { isCalledAgain.Set(); });
        second.emplace(ReentrancyWorld::product);
        EXPECT_TRUE(isCalledAgain.Wait());
        world.ExitProduct(ReentrancyWorld::otherProduct);
        EXPECT_TRUE(world.EnterProduct(ReentrancyWorld::otherProduct));
    });
    EXPECT_EQ(PolicyNotice(ReentrancyWorld::product).Answer(), NY_OK);
    EXPECT_TRUE(world.trap.HasSprung());
    EXPECT_EQ(second->Answer(), NY_OK);
}

// A module may take as long as it likes, and loses no request by that.
TEST_F(Turn, IsWaitedForWhileTheModuleIsBusyWithItself) {
    Event isOver;
    std::optional<AgentRequest> second;
    world.trap.Set("CollectProperties", L"", [&] {
        second.emplace(ReentrancyWorld::product);
        EXPECT_FALSE(second->IsAnsweredWithin(std::chrono::milliseconds(500)));
    });
    EXPECT_EQ(AgentRequest(ReentrancyWorld::product).Answer(), NY_OK);
    EXPECT_THAT(second->Properties(), testing::ElementsAre("general:version=1.0"));
}

}  // namespace
