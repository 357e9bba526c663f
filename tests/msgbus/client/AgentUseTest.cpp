// A module's thread that uses the agent while the agent's client is started and stopped.
#include "msgbus/client/AgentUse.h"

#include <thread>

#include "msgbus/client/NyClientFixture.h"
#include "support/Event.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;

bool IsPossible() {
    return static_cast<bool>(AgentUse());
}

class AgentUseTest : public NyClientFixture {
protected:
    void SetUp() override {
        NyClientFixture::SetUp();
        ExpectNotifications();
        NotifyState(NyClientStateStarted);
    }

    void Start() { ASSERT_EQ(NyClientStart(client), NY_OK); }
    // As when the agent is removed.
    void LoseAgent() {
        NyClientStop(client);
        NotifyState(NyClientStateStopped);
    }

    // Runs `end` on another thread while this one uses the agent, up to the point where it waits for that use.
    template <class End>
    void EndDuringAUse(End&& end) {
        std::thread ending;
        Event ended;
        {
            const AgentUse use;
            ASSERT_TRUE(use);
            ny_sim_clear_calls();
            ending = std::thread([&] {
                end();
                ended.Set();
            });
            while (IsPossible()) {
                std::this_thread::yield();
            }
            EXPECT_FALSE(ended.Wait(std::chrono::milliseconds(50)));
            EXPECT_EQ(ny_sim_call_count(nullptr), 0U) << "the agent is left as it is";
        }
        EXPECT_TRUE(ended.Wait());
        ending.join();
        EXPECT_FALSE(IsPossible());
    }
};

TEST_F(AgentUseTest, NeedAStartedClient) {
    EXPECT_FALSE(IsPossible());
    Start();
    const AgentUse use;
    ASSERT_TRUE(use);
    EXPECT_EQ(use.Client(), client->clientHandler.load());
}

// PatienceWith says how long a callback waits for a thread inside a module's record. That thread may itself be inside
// the agent, which may be waiting for this callback: hence the limit.
TEST_F(AgentUseTest, LimitThePatienceWithAThreadThatIsInsideAModule) {
    const DWORD self = ::GetCurrentThreadId();
    EXPECT_EQ(PatienceWith(self), CallGate::withoutLimit);
    Start();
    EXPECT_EQ(PatienceWith(self), CallGate::withoutLimit);
    {
        const AgentUse use;
        EXPECT_EQ(PatienceWith(self), callWaitLimit);
        EXPECT_EQ(PatienceWith(self + 1), CallGate::withoutLimit);
        const LongAgentCall longCall;
        EXPECT_EQ(PatienceWith(self), 2 * CallGate::patienceInterval);
        EXPECT_EQ(PatienceWith(self + 1), CallGate::withoutLimit);
    }
    EXPECT_EQ(PatienceWith(self), CallGate::withoutLimit);
}

TEST_F(AgentUseTest, AreOverWithTheClient) {
    Start();
    LoseAgent();
    EXPECT_FALSE(IsPossible());
    Start();
    EXPECT_TRUE(IsPossible());
    Release();
    EXPECT_FALSE(IsPossible());
}

TEST_F(AgentUseTest, AreWaitedForWhenTheClientStops) {
    Start();
    EndDuringAUse([this] { NyClientStop(client); });
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_stop 0"));
}

TEST_F(AgentUseTest, AreWaitedForWhenTheClientIsReleased) {
    Start();
    EndDuringAUse([this] { Release(); });
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_release 0"));
}

TEST_F(AgentUseTest, MayBeNested) {
    Start();
    const AgentUse outer;
    EXPECT_TRUE(IsPossible());
    EXPECT_TRUE(outer);
}

TEST_F(AgentUseTest, DoNotKeepTheirOwnThreadFromStoppingTheClient) {
    Start();
    const AgentUse use;
    EXPECT_EQ(NyClientStop(client), NY_OK);
    EXPECT_FALSE(IsPossible());
}

TEST_F(AgentUseTest, AreNotOfAClientThatIsNotTheirs) {
    NyClient* const other = MakeClient("PRODUCT2000");
    Start();
    EXPECT_EQ(NyClientRelease(other), NY_OK);
    EXPECT_TRUE(IsPossible());
}

TEST_F(AgentUseTest, WithoutMemoryForThemTheAgentIsNotAskedForAClient) {
    NyClientSetLogCallback(client, nullptr, nullptr);
    // Keeps the agent's libraries loaded.
    NyClient* const other = MakeClient("PRODUCT2000");
    Start();
    LoseAgent();
    ny_sim_clear_calls();
    {
        const FailingMemory memory;
        EXPECT_EQ(NyClientStart(client), NY_OUT_OF_MEMORY);
    }
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    EXPECT_EQ(client->started.load(), 0U);
    EXPECT_FALSE(IsPossible());
    Start();
    EXPECT_TRUE(IsPossible());
    NyClientRelease(other);
}

TEST_F(AgentUseTest, StayPossibleWhenAnotherClientIsClosed) {
    Start();
    int other = 0;
    CloseAgent(reinterpret_cast<const ny_client_t*>(&other));
    EXPECT_TRUE(IsPossible());
}

}  // namespace
