// The soak's report when the bridge does not follow a change of the agent. The tests use conditions that cannot be met.
#include <gtest/gtest.h>

#include "ny_simulator.h"
#include "soak/Conductor.h"
#include "support/AgentCalls.h"
#include "support/Event.h"

namespace {

class FollowReport : public testing::Test {
protected:
    FollowReport() {
        conductor.Do({.kind = Operation::Kind::Enter, .product = 2, .mask = allServicesMask});
        conductor.Do({.kind = Operation::Kind::Install});
    }
    ~FollowReport() override {
        ny_sim_clear_faults();
        conductor.EndAll();
    }

    AgentOfTheSoak agent;
    Conductor conductor{agent};
};

constexpr std::chrono::milliseconds briefly{200};

TEST_F(FollowReport, SaysWhichProductIsNotAttachedAndWhatTheAgentAnswered) {
    ASSERT_EQ(conductor.WaitUntilFollowed(soon), "");
    ny_sim_clear_calls();
    ny_sim_fail_call("ny_scheduler_register_task_callbacks", 1, 77, NY_SIM_FROM_THEN_ON);
    conductor.Do({.kind = Operation::Kind::Upgrade});
    EXPECT_EQ(conductor.WaitUntilFollowed(briefly), R"(the bridge does not follow the agent
the agent is installed as 5.2; changes: 2, starts since the last one: 1
missing:
  PRODUCT2 is not attached for the task enforcer
  PRODUCT2 is not attached for the update callback
  SHARED is not attached for the update callback
the watcher: last saw "5.2", runs, told start; the agent's client is started
the agent's answers in the last start:
  ny_client_handler_create: 0
  ny_client_handler_set_msgbus_passphrase_callback: 0
  ny_client_handler_set_thread_option: 0
  ny_client_handler_set_logger_callback: 0
  ny_client_handler_start: 0
  ny_client_handler_get_msgbus: 0
  ny_property_register_provider_callback: 0
  ny_policy_register_notification_callback: 0
  ny_scheduler_register_task_callbacks: 77
what it refused on other threads:
  none
the bridge's last lines:
  none
)");
}

// The watcher is held up in the agent's old client.
TEST_F(FollowReport, SaysThatTheAgentWasNotStarted) {
    ASSERT_EQ(conductor.WaitUntilFollowed(soon), "");
    Event mayGoOn;
    const AgentHook holding("ny_msgbus_disable_watcher", [&] { EXPECT_TRUE(mayGoOn.Wait()); });
    ny_sim_clear_calls();
    conductor.Do({.kind = Operation::Kind::Upgrade});
    EXPECT_EQ(conductor.WaitUntilFollowed(briefly), R"(the bridge does not follow the agent
the agent is installed as 5.2; changes: 2, starts since the last one: 0
missing:
  the agent was not started since the change
the watcher: last saw "5.2", runs, told start; the agent's client is started
the agent's answers in the last start:
  none
what it refused on other threads:
  none
the bridge's last lines:
  none
)");
    mayGoOn.Set();
}

// The watcher is held up where the agent lets go of the client.
TEST_F(FollowReport, SaysWhatIsLeftOfAnAgentThatIsGone) {
    ASSERT_EQ(conductor.WaitUntilFollowed(soon), "");
    Event mayGoOn;
    const AgentHook holding("ny_client_handler_release", [&] { EXPECT_TRUE(mayGoOn.Wait()); });
    ny_sim_fail_call("ny_client_handler_stop", 1, 77, NY_SIM_ONCE);
    ny_sim_clear_calls();
    conductor.Do({.kind = Operation::Kind::RemoveAgent});
    EXPECT_EQ(conductor.WaitUntilFollowed(briefly), R"(the bridge does not follow the agent
the agent is not installed; changes: 2, starts since the last one: 0
missing:
  the agent's clients that are alive: 1
  the agent's libraries are loaded
the watcher: last saw "", runs, told start; the agent's client is not started
the agent's answers in the last start:
  none
what it refused on other threads:
  ny_client_handler_stop: 77
the bridge's last lines:
  3: Successfully release all VsMsgbus iosFailed to stop VsMsgbus, exception:[Unknown exception]
)");
    mayGoOn.Set();
}

}  // namespace
