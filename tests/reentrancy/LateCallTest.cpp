// An agent that calls what is registered no more: it is answered 3, no module is reached, and nothing that is freed is
// touched.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "reentrancy/World.h"
#include "support/AgentRequest.h"
#include "support/OnPurpose.h"
#include "support/Watchdog.h"

namespace {

constexpr const char* product = ReentrancyWorld::product;
constexpr std::chrono::seconds lateLimit{60};

struct LateCallback {
    ny_sim_callback callback;
    const char* name;
};

constexpr LateCallback lateCallbacks[] = {
    {NY_SIM_CALL_PROPERTIES, "Properties"},
    {NY_SIM_CALL_POLICY, "Policy"},
    {NY_SIM_CALL_TASK_EXECUTE, "TaskExecute"},
    {NY_SIM_CALL_TASK_STOP, "TaskStop"},
    {NY_SIM_CALL_TASK_REMOVE, "TaskRemove"},
    {NY_SIM_CALL_TASK_UPDATE_STATUS, "TaskUpdateStatus"},
    {NY_SIM_CALL_UPDATE_NOTIFY, "UpdateNotify"},
    {NY_SIM_CALL_SET_PRODUCT_INFO, "SetProductInfo"},
    {NY_SIM_CALL_GET_PRODUCT_INFO, "GetProductInfo"},
    {NY_SIM_CALL_UPDATE_EVENT, "UpdateEvent"},
    {NY_SIM_CALL_LOG, "Log"},
};

void PrintTo(const LateCallback& callback, std::ostream* stream) {
    *stream << callback.name;
}

// Null when nothing of that kind was registered.
ny_sim_late_call_t* BeginLate(ny_sim_callback callback, size_t index = 0) {
    ny_sim_late_call_t* call = nullptr;
    ny_sim_call_late(callback, product, index, &call);
    return call;
}

int32_t CallLate(ny_sim_callback callback, size_t index = 0) {
    ny_sim_late_call_t* const call = BeginLate(callback, index);
    int32_t answer = NY_SIM_NOT_REGISTERED;
    EXPECT_EQ(ny_sim_late_call_wait(call, static_cast<uint32_t>(soon.count()), &answer), NY_OK);
    ny_sim_late_call_release(call);
    return answer;
}

class LateCall : public testing::TestWithParam<LateCallback> {
protected:
    void SetUp() override {
        world.PutAgent();
        ny_sim_set_remember(1);
        world.EnterAll();
    }
    void TearDown() override {
        world.LeaveAll();
        world.ExpectNothingLeft();
    }

    // A log line is taken also when no sink gets it any more.
    void ExpectRefusal(size_t index = 0) {
        const uint64_t callsBefore = world.trap.Calls();
        const int32_t answer = CallLate(callback, index);
        if (callback != NY_SIM_CALL_LOG) {
            EXPECT_EQ(answer, NY_UNEXPECTED);
        }
        EXPECT_EQ(world.trap.Calls(), callsBefore) << "a module was called";
    }

    const Watchdog watchdog{"late calls", lateLimit};
    const ny_sim_callback callback = GetParam().callback;
    ReentrancyWorld world;
};

TEST_P(LateCall, IsRefusedAfterTheExitOfOneOfTwoProducts) {
    EXPECT_TRUE(world.EnterProduct(ReentrancyWorld::otherProduct));
    world.ExitProduct();
    if (callback != NY_SIM_CALL_LOG) {
        ExpectRefusal();
    }
    EXPECT_TRUE(world.EnterProduct());
    EXPECT_EQ(AgentRequest(product).Answer(), NY_OK);
}

TEST_P(LateCall, IsRefusedAfterTheLastExit) {
    world.ExitProduct();
    ExpectRefusal();
    EXPECT_TRUE(world.EnterProduct());
    EXPECT_EQ(AgentRequest(product).Answer(), NY_OK);
}

// The new registration may have the old one's data: the call is then as good as one of the new.
TEST_P(LateCall, OfAnOldRegistrationDoesNoHarmToTheNewOne) {
    world.ExitProduct();
    EXPECT_TRUE(world.EnterProduct());
    ASSERT_EQ(ny_sim_remembered_count(callback, product), 2U);
    CallLate(callback, 0);
    CallLate(callback, 1);
    EXPECT_EQ(AgentRequest(product).Answer(), NY_OK);
}

TEST_P(LateCall, IsRefusedWhenTheAgentIsGone) {
    ReentrancyWorld::TakeAgentAway();
    EXPECT_TRUE(ReentrancyWorld::WaitForWatcher([](auto limit) {
        return ny_sim_wait_calls("ny_client_handler_release", 1, static_cast<uint32_t>(limit.count())) == NY_OK;
    }));
    ExpectRefusal();
}

// The agent calls without waiting for answers, all the while the product leaves and enters.
TEST_P(LateCall, MayMeetExitAndEntry) {
    const OnPurpose mistakes{"EXIT-WHILE-CALLED"};
    constexpr int rounds = 20;
    std::atomic<bool> isOver = false;
    std::vector<std::thread> callers;
    for (int i = 0; i < 2; ++i) {
        callers.emplace_back([&] {
            while (!isOver) {
                const size_t count = ny_sim_remembered_count(callback, product);
                ny_sim_late_call_release(BeginLate(callback, count - 1));
            }
        });
    }
    for (int i = 0; i < rounds; ++i) {
        world.ExitProduct();
        EXPECT_TRUE(world.EnterProduct());
    }
    isOver = true;
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(AgentRequest(product).Answer(), NY_OK);
}

INSTANTIATE_TEST_SUITE_P(Reentrancy, LateCall, testing::ValuesIn(lateCallbacks),
                         [](const testing::TestParamInfo<LateCallback>& test) { return test.param.name; });

}  // namespace
