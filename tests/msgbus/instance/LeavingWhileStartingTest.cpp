// A product that leaves while the agent's start attaches the products must not cost those after it their registrations:
// nobody makes up for them before the agent's version changes again.
#include <thread>

#include "VsMsgbus.h"
#include "support/AgentFunctions.h"
#include "support/BridgeTest.h"
#include "support/Checkpoint.h"

namespace {

constexpr char registerPolicy[] = "ny_policy_register_notification_callback";
constexpr char unregisterPolicy[] = "ny_policy_unregister_notification_callback";

using LeavingWhileStarting = BridgeTest;

// The start is held up at the first product, "A". "B", which is next, is attached by an Entry of its own and leaves at
// once; when the start comes to "B", the agent is told of the leaving but has not let go of the registration yet.
TEST_F(LeavingWhileStarting, DoesNotEndTheStartForTheProductsAfterIt) {
    environment.Installer().CreateAgentKey();
    const Product first("A");
    Product leaving("B", nullptr, VsMsgbusServicePolicy);
    const Product last("C");
    {
        HeldAgentCall starting(registerProvider);
        HeldAgentCall leavingAgent(unregisterPolicy);
        environment.InstallAgent("5.7.1");
        ASSERT_TRUE(SeenByWatcher([&](auto limit) { return starting.isInside.Wait(limit); }));
        std::thread leaver([&] {
            VsMsgbus* instance = nullptr;
            EXPECT_TRUE(VsMsgbusEntry("B", VsMsgbusServicePolicy, nullptr, &instance));
            leaving.Exit();
            leavingAgent.isInside.Set();
        });
        EXPECT_TRUE(leavingAgent.isInside.Wait());
        starting.mayGoOn.Set();
        // A bridge that asks the agent for "B" again is answered now; one that waits for the leaving asks nothing.
        static_cast<void>(ny_sim_wait_calls(registerPolicy, 2, 500));
        leavingAgent.mayGoOn.Set();
        leaver.join();
    }
    EXPECT_EQ(ny_sim_wait_calls(registerProvider, 2, 5000), NY_OK);
    EXPECT_EQ(ny_sim_has_property_provider("C"), 1);
    EXPECT_EQ(ny_sim_has_policy_callback("B"), 0);
}

}  // namespace
