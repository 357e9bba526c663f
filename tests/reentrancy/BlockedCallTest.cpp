// A call of the agent that takes 20 seconds while the agent goes or the last product leaves: no thread waits longer
// than promised, and the library stays under the thread that is in it. In the whole form only, because that takes its
// time.
#include <windows.h>

#include <gtest/gtest.h>

#include <thread>

#include "reentrancy/Cell.h"
#include "support/AgentCalls.h"
#include "support/AgentRequest.h"
#include "support/AgentTasks.h"
#include "support/Event.h"
#include "support/PolicyNotice.h"
#include "support/Watchdog.h"

namespace {

constexpr std::chrono::seconds heldFor{20};  // longer than the bridge waits
constexpr std::chrono::seconds exitLimit{35};
constexpr std::chrono::seconds blockedLimit{120};

// A call of the agent, and the code that makes it.
struct BlockedCall {
    const char* name;
    const char* function;
    void (*make)();
    // The agent waits for the callback in which it is made.
    bool isInCallback;
};

constexpr BlockedCall blockedCalls[] = {
    {"Information", "ny_info_get",
     [] {
         VsKitMsgbus::lpc_buffer text{};
         VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &text);
         text.Release();
     },
     false},
    {"Crypto", "ny_crypto_encrypt_data_by_type",
     [] {
         const unsigned char plain[16] = {};
         unsigned char secret[256] = {};
         unsigned int size = 0;
         VsKitMsgbusEncryptData(plain, sizeof plain, secret, &size, 1);
     },
     false},
    {"Variant", "ny_variant_get_string",
     [] {
         VsKitMsgbus::lpc_buffer text{};
         VsKitMsgbusGetInfoByKeyName("GUID", &text);
         text.Release();
     },
     false},
    {"EnforcePolicy", "ny_policy_enforce", [] { VsKitEnforceLocalPolicy(ReentrancyWorld::wideProduct); }, false},
    {"TaskStatus", "ny_scheduler_update_task_status", [] { UpdateMsgbusTaskStatus(L"task", 2); }, false},
    {"Property", "ny_property_bag_add_property", [] { AgentRequest(ReentrancyWorld::product).Answer(); }, true},
    {"PolicyWalk", "ny_policy_get", [] { PolicyNotice(ReentrancyWorld::product).Answer(); }, true},
    {"TaskSetting", "ny_task.get_section", [] { AnswerOf("task"); }, true},
};

void PrintTo(const BlockedCall& call, std::ostream* stream) {
    *stream << call.name;
}

class BlockedCallTest : public testing::TestWithParam<BlockedCall> {
protected:
    void SetUp() override {
        if (!IsWholeFormWanted()) {
            GTEST_SKIP() << "REENTRANCY_WHOLE is not set";
        }
        world.PutAgent();
        world.EnterAll();
        caller = std::thread(GetParam().make);
        ASSERT_TRUE(isInside.Wait());
    }
    void TearDown() override {
        if (!caller.joinable()) {
            return;
        }
        hasWaited.Set();
        caller.join();
        world.LeaveAll();
        world.ExpectNothingLeft();
        world.PutAgent();
        world.EnterAll();
        EXPECT_EQ(AgentRequest(ReentrancyWorld::product).Answer(), NY_OK);
        world.LeaveAll();
        world.ExpectNothingLeft();
    }

    const Watchdog watchdog{"a blocked call", blockedLimit};
    ReentrancyWorld world;
    Event isInside;
    // Never set before the time is over: the hook waits that long.
    Event hasWaited;
    AgentHook hook{GetParam().function, [this] {
                       isInside.Set();
                       hasWaited.Wait(heldFor);
                       EXPECT_NE(::GetModuleHandleA("ny_client.dll"), nullptr) << "unloaded under the call";
                   }};
    std::thread caller;
};

TEST_P(BlockedCallTest, KeepsItsLibraryWhileTheAgentIsRemovedForLongerThanRealFifteenSeconds) {
    ReentrancyWorld::TakeAgentAway();
    EXPECT_TRUE(ReentrancyWorld::WaitForWatcher([](auto limit) {
        return ny_sim_wait_calls("ny_msgbus_disable_watcher", 1, static_cast<uint32_t>(limit.count())) == NY_OK;
    }));
    caller.join();
    caller = std::thread([] {});
}

TEST_P(BlockedCallTest, KeepsItsLibraryWhileTheLastProductLeavesForLongerThanRealFifteenSeconds) {
    const auto begin = std::chrono::steady_clock::now();
    world.ExitProduct();
    // The agent itself waits for a callback, as long as that takes.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, exitLimit);
}

INSTANTIATE_TEST_SUITE_P(Reentrancy, BlockedCallTest, testing::ValuesIn(blockedCalls),
                         [](const testing::TestParamInfo<BlockedCall>& test) { return test.param.name; });

}  // namespace
