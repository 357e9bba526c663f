// The states that the point product is told when the agent comes and goes.
#include <windows.h>

#include "msgbus/client/NyClientFixture.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NyClientStateTest : public NyClientFixture {
protected:
    void SetUp() override {
        NyClientFixture::SetUp();
        ExpectNotifications();
    }
};

TEST_F(NyClientStateTest, StartedIsToldOnce) {
    NotifyState(NyClientStateStarted);
    NotifyState(NyClientStateStarted);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(toStart, "told 1"));
    EXPECT_EQ(client->notified.load(), 1U);
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
}

TEST_F(NyClientStateTest, StoppedIsNotToldToAPointProductThatWasNotToldOfAStart) {
    NotifyState(NyClientStateStopped);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
    EXPECT_NE(client->dispatcher, nullptr);
}

TEST_F(NyClientStateTest, AStateThatIsNeitherCountsAsStarted) {
    NotifyState(7);
    EXPECT_THAT(lines.client.Take(), ElementsAre(toStart, "told 7"));
    EXPECT_EQ(client->notified.load(), 1U);
    NotifyState(NyClientStateStarted);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
}

// The version is asked for when the group of functions is loaded.
TEST_F(NyClientStateTest, StoppedDisablesTheBusThenTellsThenLetsGoOfTheAgent) {
    NotifyState(NyClientStateStarted);
    ASSERT_EQ(NyClientStart(client), NY_OK);
    lines.client.Take();
    ny_sim_clear_calls();
    onNotification = [](NyClient* told, uint32_t) { EXPECT_EQ(NyClientStop(told), NY_OK); };
    NotifyState(NyClientStateStopped);
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_msgbus_get_version 0", "ny_msgbus_disable_watcher 0",
                                             "ny_client_handler_stop 0", "ny_client_handler_release 0"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre(toStop, "told 0", "5 ny_client: stopping ny client."));
    EXPECT_EQ(client->notified.load(), 0U);
    EXPECT_EQ(client->clientHandler.load(), nullptr);
    EXPECT_EQ(client->msgbus.load(), nullptr);
    EXPECT_EQ(client->dispatcher, nullptr);
    EXPECT_EQ(::GetModuleHandleA("ny_client.dll"), nullptr);
    EXPECT_EQ(::GetModuleHandleA("ny_msgbus.dll"), nullptr);
}

TEST_F(NyClientStateTest, StoppedTwiceIsToldOnce) {
    NotifyState(NyClientStateStarted);
    NotifyState(NyClientStateStopped);
    lines.client.Take();
    NotifyState(NyClientStateStopped);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
}

// As by a watcher that saw the client before it was released, and ends before the change of the other one does.
TEST_F(NyClientStateTest, NothingIsLeftToBeDoneForAReleasedClient) {
    static std::shared_ptr<NyClient> released;
    released = MakeClient("PRODUCT2000")->shared_from_this();
    ASSERT_EQ(NyClientRelease(released.get()), NY_OK);
    onNotification = [](NyClient*, uint32_t) {
        ChangeClient(*released, ClientChange::Start);
        released.reset();
    };
    NotifyState(NyClientStateStarted);
    EXPECT_EQ(released, nullptr);
    EXPECT_EQ(client->notified.load(), 1U);
}

TEST_F(NyClientStateTest, StoppedForgetsTheLogger) {
    ny_logger_t* logger = nullptr;
    ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
    NotifyState(NyClientStateStarted);
    client->logger = logger;
    NotifyState(NyClientStateStopped);
    EXPECT_EQ(client->logger, nullptr);
    ny_sim_logger_release(logger);
}

// Neither a bus that refuses nor one that lacks the function keeps the point product from being told.
TEST_F(NyClientStateTest, StoppedIsToldWhateverTheBusAnswers) {
    NotifyState(NyClientStateStarted);
    ASSERT_EQ(NyClientStart(client), NY_OK);
    lines.client.Take();
    ny_sim_fail_call("ny_msgbus_disable_watcher", 1, 44, NY_SIM_ONCE);
    NotifyState(NyClientStateStopped);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(toStop, "told 0"));
    EXPECT_EQ(client->notified.load(), 0U);
}

TEST_F(NyClientStateTest, StoppedIsToldWithAnAgentThatCannotDisableItsBus) {
    environment.InstallAgent("5.7.1", "lacking");
    NotifyState(NyClientStateStarted);
    ASSERT_EQ(NyClientStart(client), NY_OK);
    lines.client.Take();
    ny_sim_clear_calls();
    NotifyState(NyClientStateStopped);
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_msgbus_get_version 0", "ny_client_handler_release 0"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre(toStop, "told 0"));
}

TEST_F(NyClientStateTest, StartedAfterAStopLoadsTheDispatcherAnew) {
    NotifyState(NyClientStateStarted);
    NotifyState(NyClientStateStopped);
    lines.client.Take();
    onNotification = [](NyClient* told, uint32_t) { EXPECT_NE(told->dispatcher, nullptr); };
    NotifyState(NyClientStateStarted);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(toStart, "told 1"));
}

TEST_F(NyClientStateTest, StartedWithoutADispatcherIsNotTold) {
    NotifyState(NyClientStateStarted);
    NotifyState(NyClientStateStopped);
    lines.client.Take();
    static LogSeverity severity;
    static bool isExactText;
    severity = SeverityDetail;
    isExactText = false;
    // Allocates nothing: there is no memory.
    NyClientSetLogCallback(
        client,
        [](uint32_t lineSeverity, const char* module, const char* message, void*) -> int32_t {
            severity = static_cast<LogSeverity>(lineSeverity);
            isExactText = std::string_view(module) == "ny_client" &&
                          std::string_view(message) == "failed to initialize dispatcher.";
            return NY_OK;
        },
        nullptr);
    {
        const FailingMemory memory;
        NotifyState(NyClientStateStarted);
    }
    EXPECT_EQ(severity, SeverityFailure);
    EXPECT_TRUE(isExactText);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
    EXPECT_EQ(client->notified.load(), 0U);
    EXPECT_EQ(client->dispatcher, nullptr);
}

TEST_F(NyClientStateTest, WithoutACallbackAreKeptAllTheSame) {
    client->notification = nullptr;
    NotifyState(NyClientStateStarted);
    EXPECT_EQ(client->notified.load(), 1U);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(toStart));
}

TEST_F(NyClientStateTest, OfNoClientIsNotTold) {
    EXPECT_EQ(NyClientNotifyState(nullptr, NyClientStateStarted, this), NY_OK);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
}

}  // namespace
