// Stopping the agent's client handler.
#include "msgbus/client/NyClientFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NyClientStopTest : public NyClientFixture {
protected:
    void Start() {
        ASSERT_EQ(NyClientStart(client), NY_OK);
        lines.client.Take();
        ny_sim_clear_calls();
    }

    // As a removal does when the point product does not stop the client: the handler is gone, the mark stays.
    void LoseHandler() {
        ExpectNotifications();
        NotifyState(NyClientStateStarted);
        Start();
        NotifyState(NyClientStateStopped);
        ASSERT_EQ(client->clientHandler.load(), nullptr);
        ASSERT_EQ(client->started.load(), 1U);
        lines.client.Take();
        ny_sim_clear_calls();
    }
};

TEST_F(NyClientStopTest, RefusesNull) {
    EXPECT_EQ(NyClientStop(nullptr), NY_INVALID_ARGUMENT);
}

TEST_F(NyClientStopTest, OfAClientThatIsNotStartedIsLoggedAsAFailureAndIsNone) {
    EXPECT_EQ(NyClientStop(client), NY_OK);
    EXPECT_THAT(lines.client.Lines(), ElementsAre("2 ny_client: ny client already stopped."));
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
}

TEST_F(NyClientStopTest, StopsTheHandlerAndKeepsIt) {
    Start();
    EXPECT_EQ(NyClientStop(client), NY_OK);
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_stop 0"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: stopping ny client."));
    EXPECT_EQ(client->started.load(), 0U);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 1U);
    EXPECT_EQ(ny_sim_started_clients(), 0U);
}

TEST_F(NyClientStopTest, ASecondTimeDoesNotCallTheAgent) {
    Start();
    ASSERT_EQ(NyClientStop(client), NY_OK);
    EXPECT_EQ(NyClientStop(client), NY_OK);
    EXPECT_THAT(lines.client.Lines(),
                ElementsAre("5 ny_client: stopping ny client.", "2 ny_client: ny client already stopped."));
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_stop 0"));
}

TEST_F(NyClientStopTest, AnswersTheAgentsRefusalAndCountsAsStopped) {
    Start();
    ny_sim_fail_call("ny_client_handler_stop", 1, 55, NY_SIM_ONCE);
    EXPECT_EQ(NyClientStop(client), 55);
    EXPECT_EQ(client->started.load(), 0U);
    EXPECT_EQ(NyClientStop(client), NY_OK);
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_stop 55"));
}

TEST_F(NyClientStopTest, MarksTheClientStoppedBeforeTheAgentIsCalled) {
    Start();
    static uint32_t startedInside;
    startedInside = 1;
    ny_sim_set_hook(
        "ny_client_handler_stop",
        [](const char*, void* userData) { startedInside = static_cast<NyClient*>(userData)->started.load(); }, client);
    EXPECT_EQ(NyClientStop(client), NY_OK);
    EXPECT_EQ(startedInside, 0U);
}

TEST_F(NyClientStopTest, WithoutLibrariesAnswersThatTheFunctionIsMissing) {
    LoseHandler();
    EXPECT_EQ(NyClientStop(client), NY_FUNCTION_MISSING);
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: stopping ny client."));
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
}

TEST_F(NyClientStopTest, CallsTheAgentWithoutAHandlerWhenThatIsGone) {
    NyClient* const other = MakeClient("PRODUCT2000");
    LoseHandler();
    EXPECT_EQ(NyClientStop(client), NY_INVALID_ARGUMENT);
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_stop 1"));
    NyClientRelease(other);
}

}  // namespace
