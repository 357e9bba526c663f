// The record of the agent's calls, and hooks into them.
#include <memory>
#include <thread>

#include "simulator/SimulatorTest.h"
#include "support/Checkpoint.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CallRecord : public SimulatorTest {
protected:
    static ny_sim_call_t At(size_t index) {
        ny_sim_call_t call{};
        EXPECT_EQ(ny_sim_get_call(index, &call), NY_OK);
        return call;
    }
};

TEST_F(CallRecord, NamesFunctionThreadAndAnswerInOrder) {
    ASSERT_EQ(ny_sim_fail_call("ny_variant_deinit", 1, 77, NY_SIM_ONCE), NY_OK);
    DWORD otherThread = 0;
    Call<&ny_variant_init>();
    std::thread other([&] {
        otherThread = ::GetCurrentThreadId();
        Call<&ny_variant_deinit>();
    });
    other.join();
    Call<&ny_variant_release>(nullptr);
    ASSERT_THAT(AgentCalls(), ElementsAre("ny_variant_init", "ny_variant_deinit", "ny_variant_release"));
    EXPECT_EQ(At(0).threadId, ::GetCurrentThreadId());
    EXPECT_EQ(At(0).result, NY_OK);
    EXPECT_EQ(At(1).threadId, otherThread);
    EXPECT_EQ(At(1).result, 77);
    EXPECT_EQ(At(2).result, NY_INVALID_ARGUMENT);
}

TEST_F(CallRecord, CountsByFunctionOrAll) {
    Call<&ny_variant_init>();
    Call<&ny_variant_init>();
    Call<&ny_variant_deinit>();
    EXPECT_EQ(ny_sim_call_count("ny_variant_init"), 2U);
    EXPECT_EQ(ny_sim_call_count("ny_variant_deinit"), 1U);
    EXPECT_EQ(ny_sim_call_count("ny_log_v"), 0U);
    EXPECT_EQ(ny_sim_call_count(nullptr), 3U);
    ny_sim_call_t call{};
    EXPECT_EQ(ny_sim_get_call(3, &call), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_get_call(0, nullptr), NY_INVALID_ARGUMENT);
}

TEST_F(CallRecord, IsForgottenWhenClearedOrReset) {
    Call<&ny_variant_init>();
    ny_sim_clear_calls();
    EXPECT_THAT(AgentCalls(), IsEmpty());
    Call<&ny_variant_deinit>();
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_variant_deinit"));
    ny_sim_reset();
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(CallRecord, CountsARunningCallButDoesNotWaitForLessThanItsEnd) {
    HeldAgentCall held("ny_variant_init");
    std::thread caller([&] { Call<&ny_variant_init>(); });
    ASSERT_TRUE(held.isInside.Wait());
    EXPECT_EQ(ny_sim_call_count("ny_variant_init"), 1U);
    EXPECT_EQ(ny_sim_wait_calls("ny_variant_init", 1, 0), NY_SIM_TIMEOUT);
    EXPECT_EQ(ny_sim_wait_calls(nullptr, 1, 0), NY_SIM_TIMEOUT);
    held.mayGoOn.Set();
    EXPECT_TRUE(WaitForAgentCalls("ny_variant_init"));
    EXPECT_EQ(ny_sim_wait_calls(nullptr, 1, 0), NY_OK);
    EXPECT_EQ(ny_sim_wait_calls("ny_variant_init", 2, 0), NY_SIM_TIMEOUT);
    EXPECT_EQ(ny_sim_wait_calls("ny_variant_deinit", 0, 0), NY_OK);
    caller.join();
}

TEST_F(CallRecord, OfACallThatWasClearedAwayWhileItRanStaysEmpty) {
    const AgentHook hook("ny_variant_init", [] { ny_sim_clear_calls(); });
    EXPECT_EQ(Call<&ny_variant_init>(), NY_OK);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(CallRecord, HooksRunOnTheCallersThreadBeforeAFaultIsLookedAt) {
    DWORD threadOfHook = 0;
    const AgentHook hook("ny_variant_init", [&] {
        threadOfHook = ::GetCurrentThreadId();
        ny_sim_fail_call("ny_variant_init", 1, 77, NY_SIM_ONCE);
    });
    EXPECT_EQ(Call<&ny_variant_init>(), 77);
    EXPECT_EQ(threadOfHook, ::GetCurrentThreadId());
}

TEST_F(CallRecord, HooksMayCallTheAgent) {
    const AgentHook hook("ny_variant_init", [&] { Call<&ny_variant_deinit>(); });
    EXPECT_EQ(Call<&ny_variant_init>(), NY_OK);
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_variant_init", "ny_variant_deinit"));
}

// Of the tests' own, which use what ends with the test.
TEST_F(CallRecord, AHookEndsWhenItsCodeHasReturnedOnAnotherThread) {
    Checkpoint held;
    auto hook = std::make_unique<AgentHook>("ny_variant_init", [&] { held.Stop(); });
    std::thread caller([&] { Call<&ny_variant_init>(); });
    ASSERT_TRUE(held.isInside.Wait());
    Event hasEnded;
    std::thread remover([&] {
        hook.reset();
        hasEnded.Set();
    });
    EXPECT_FALSE(hasEnded.Wait(std::chrono::milliseconds(50)));
    held.mayGoOn.Set();
    EXPECT_TRUE(hasEnded.Wait());
    remover.join();
    caller.join();
}

TEST_F(CallRecord, AHookMayEndInsideItsOwnCode) {
    std::unique_ptr<AgentHook> hook;
    hook = std::make_unique<AgentHook>("ny_variant_init", [&] { hook.reset(); });
    EXPECT_EQ(Call<&ny_variant_init>(), NY_OK);
    EXPECT_EQ(hook, nullptr);
}

TEST_F(CallRecord, HooksAreReplacedRemovedAndForgottenByAReset) {
    int runs = 0;
    const auto count = [](const char* function, void* userData) {
        EXPECT_STREQ(function, "ny_variant_init");
        ++*static_cast<int*>(userData);
    };
    int replaced = 0;
    ASSERT_EQ(ny_sim_set_hook("ny_variant_init", count, &replaced), NY_OK);
    ASSERT_EQ(ny_sim_set_hook("ny_variant_init", count, &runs), NY_OK);
    Call<&ny_variant_init>();
    Call<&ny_variant_deinit>();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(replaced, 0);
    ASSERT_EQ(ny_sim_set_hook("ny_variant_init", nullptr, nullptr), NY_OK);
    Call<&ny_variant_init>();
    EXPECT_EQ(runs, 1);
    ASSERT_EQ(ny_sim_set_hook("ny_variant_init", count, &runs), NY_OK);
    ny_sim_reset();
    Call<&ny_variant_init>();
    EXPECT_EQ(runs, 1);
}

}  // namespace
