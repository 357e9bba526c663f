// Modules that act against the headers' advice, and calls at the worst moment: nothing breaks, and nothing takes longer
// than the headers say.
#include <thread>

#include "VsMsgbus.h"
#include "support/AgentFunctions.h"
#include "support/BridgeTest.h"
#include "support/OnPurpose.h"
#include "support/Rendezvous.h"

using testing::IsEmpty;

namespace {

class AgainstAdvice : public BridgeTest {
protected:
    // Waits for what the watcher's thread does after the last callback.
    static void WaitUntilTheAgentIsUnloaded() {
        const Event never;
        for (int i = 0; i < 3000 && ::GetModuleHandleA("ny_client.dll") != nullptr; ++i) {
            never.Wait(std::chrono::milliseconds(10));
        }
    }

    // Two threads enter at the same moment, again and again.
    static void EnterTogether(bool isAgentThere) {
        Rendezvous rendezvous(2);
        VsMsgbus* instances[2] = {};
        const char* const ids[2] = {"PRODUCT1000", "PRODUCT2000"};
        const auto enter = [&](size_t which) {
            rendezvous.Meet();
            EXPECT_TRUE(VsMsgbusEntry(ids[which], VsMsgbusServiceProperty, nullptr, &instances[which]));
        };
        for (int round = 0; round < 50; ++round) {
            std::thread other(enter, 1);
            enter(0);
            other.join();
            EXPECT_EQ(instances[0], instances[1]);
            for (size_t which = 0; which < 2; ++which) {
                EXPECT_EQ(ny_sim_has_property_provider(ids[which]), isAgentThere ? 1 : 0);
                EXPECT_TRUE(VsMsgbusExit(ids[which], instances[which]));
            }
            EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 0U);
        }
    }
};

TEST_F(AgainstAdvice, TwoEntriesAtOnceGiveOneInstanceAndAttachBothProducts) {
    const OnPurpose mistakes{"ENTRY-NO-SINK"};
    environment.InstallAgent();
    EnterTogether(true);
}

TEST_F(AgainstAdvice, TwoEntriesAtOnceGiveOneInstanceWithoutAnAgent) {
    const OnPurpose mistakes{"ENTRY-NO-SINK"};
    environment.Installer().CreateAgentKey();
    EnterTogether(false);
}

// The agent goes and waits for the callback; the last Exit inside that callback waits for the watcher, which waits for
// the agent. That wait ends after 15 seconds, and the watcher does the rest.
TEST_F(AgainstAdvice, TheLastExitInsideACallbackThatTheAgentWaitsForTakesNoLongerThanRealFifteenSeconds) {
    environment.InstallAgent();
    Product product("PRODUCT1000");
    Event isInside;
    Event isUnregistering;
    const AgentHook hook(unregisterProvider, [&] { isUnregistering.Set(); });
    std::chrono::steady_clock::duration taken{};
    collector.collect = [&](VsKitMsgbus::INYCollectProperties::ISet&) {
        isInside.Set();
        EXPECT_TRUE(isUnregistering.Wait());
        const auto begin = std::chrono::steady_clock::now();
        product.Exit();
        taken = std::chrono::steady_clock::now() - begin;
    };
    Registration registration("PRODUCT1000", collector);
    {
        const AgentRequest request("PRODUCT1000");
        ASSERT_TRUE(isInside.Wait());
        environment.Installer().DeleteVersion();
        EXPECT_TRUE(SeenByWatcher([&](auto limit) { return isUnregistering.Wait(limit); }));
        EXPECT_EQ(request.Answer(), NY_OK);
    }
    EXPECT_LT(taken, std::chrono::seconds(20));
    WaitUntilTheAgentIsUnloaded();
    environment.InstallAgent();
    const Product next("PRODUCT1000");
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
}

}  // namespace
