// Starting the agent's client handler: which agent functions are called, in order, and what each failure means.
#include "msgbus/client/NyClientFixture.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NyClientStartTest : public NyClientFixture {};

TEST_F(NyClientStartTest, RefusesNull) {
    EXPECT_EQ(NyClientStart(nullptr), NY_INVALID_ARGUMENT);
}

TEST_F(NyClientStartTest, ConfiguresTheHandlerBeforeItStarts) {
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(AnsweredCalls(),
                ElementsAre("ny_client_handler_create 0", "ny_client_handler_set_msgbus_passphrase_callback 0",
                            "ny_client_handler_set_thread_option 0", "ny_client_handler_set_logger_callback 0",
                            "ny_client_handler_start 0", "ny_client_handler_get_msgbus 0"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: ny client is started."));
    EXPECT_NE(client->clientHandler.load(), nullptr);
    EXPECT_NE(client->msgbus.load(), nullptr);
    EXPECT_EQ(client->started.load(), 1U);
    EXPECT_EQ(ny_sim_started_clients(), 1U);
}

TEST_F(NyClientStartTest, ASecondTimeDoesNotCallTheAgent) {
    ASSERT_EQ(NyClientStart(client), NY_OK);
    lines.client.Take();
    ny_sim_clear_calls();
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: ny client already started."));
}

TEST_F(NyClientStartTest, GivesTheHandlerTheMessageBusThatIsKnown) {
    NyClient* const other = MakeClient("PRODUCT2000");
    ASSERT_EQ(NyClientStart(other), NY_OK);
    ny_msgbus_t* const bus = other->msgbus.load();
    client->msgbus = bus;
    ny_sim_clear_calls();
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_create 0", "ny_client_handler_set_msgbus 0",
                                             "ny_client_handler_set_msgbus_passphrase_callback 0",
                                             "ny_client_handler_set_thread_option 0",
                                             "ny_client_handler_set_logger_callback 0", "ny_client_handler_start 0"));
    EXPECT_EQ(client->msgbus.load(), bus);
    Release();
    NyClientRelease(other);
}

TEST_F(NyClientStartTest, GivesTheHandlerTheLoggerThatIsSet) {
    ny_logger_t* logger = nullptr;
    ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
    client->logger = logger;
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(AnsweredCalls(),
                ElementsAre("ny_client_handler_create 0", "ny_client_handler_set_msgbus_passphrase_callback 0",
                            "ny_client_handler_set_thread_option 0", "ny_client_handler_set_logger 0",
                            "ny_client_handler_start 0", "ny_client_handler_get_msgbus 0"));
    EXPECT_EQ(ny_sim_emit_log(2, "agent", "text"), NY_SIM_NOT_REGISTERED) << "a callback was set as well";
    Release();
    ny_sim_logger_release(logger);
}

// A handler that a stop left is released first; its message bus goes with it, so a bus of somebody else's is known
// here.
TEST_F(NyClientStartTest, AgainAfterAStopReleasesTheHandlerThatWasLeft) {
    NyClient* const other = MakeClient("PRODUCT2000");
    ASSERT_EQ(NyClientStart(other), NY_OK);
    client->msgbus = other->msgbus.load();
    ASSERT_EQ(NyClientStart(client), NY_OK);
    ASSERT_EQ(NyClientStop(client), NY_OK);
    lines.client.Take();
    ny_sim_clear_calls();
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(
        AnsweredCalls(),
        ElementsAre("ny_client_handler_release 0", "ny_client_handler_create 0", "ny_client_handler_set_msgbus 0",
                    "ny_client_handler_set_msgbus_passphrase_callback 0", "ny_client_handler_set_thread_option 0",
                    "ny_client_handler_set_logger_callback 0", "ny_client_handler_start 0"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: ny client is started."));
    Release();
    NyClientRelease(other);
}

TEST_F(NyClientStartTest, EndsWithTheCodeOfACreationThatFails) {
    ny_sim_fail_call("ny_client_handler_create", 1, 77, NY_SIM_ONCE);
    EXPECT_EQ(NyClientStart(client), 77);
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_create 77"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre("2 ny_client: falied to start ny client."));
    EXPECT_EQ(client->started.load(), 0U);
    EXPECT_EQ(client->clientHandler.load(), nullptr);
}

TEST_F(NyClientStartTest, ReleasesAHandlerThatDoesNotStartOnceSoThatTheNextStartBeginsClean) {
    ny_sim_fail_call("ny_client_handler_start", 1, 88, NY_SIM_ONCE);
    EXPECT_EQ(NyClientStart(client), 88);
    EXPECT_THAT(AnsweredCalls(),
                ElementsAre("ny_client_handler_create 0", "ny_client_handler_set_msgbus_passphrase_callback 0",
                            "ny_client_handler_set_thread_option 0", "ny_client_handler_set_logger_callback 0",
                            "ny_client_handler_start 88", "ny_client_handler_release 0"));
    EXPECT_THAT(lines.client.Take(), ElementsAre("2 ny_client: falied to start ny client."));
    EXPECT_EQ(client->clientHandler.load(), nullptr);
    EXPECT_EQ(client->started.load(), 0U);
    ny_sim_clear_calls();
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(AnsweredCalls().front(), "ny_client_handler_create 0");
}

TEST_F(NyClientStartTest, AnswersWhyTheHandlerDidNotStartEvenWhenItsReleaseFails) {
    static ny_client_t* lost = nullptr;
    const auto keep = [](const char*, void* userData) {
        lost = static_cast<NyClient*>(userData)->clientHandler.load();
    };
    ny_sim_set_hook("ny_client_handler_start", keep, client);
    ny_sim_fail_call("ny_client_handler_start", 1, 88, NY_SIM_ONCE);
    ny_sim_fail_call("ny_client_handler_release", 1, 99, NY_SIM_ONCE);
    EXPECT_EQ(NyClientStart(client), 88);
    EXPECT_EQ(client->clientHandler.load(), nullptr);
    EXPECT_EQ(agent::ny_client_handler_release(lost), NY_OK);
}

class NyClientSetting : public NyClientStartTest, public testing::WithParamInterface<const char*> {};

TEST_P(NyClientSetting, ThatTheAgentRefusesKeepsNoClientFromStarting) {
    NyClient* const other = MakeClient("PRODUCT2000");
    ASSERT_EQ(NyClientStart(other), NY_OK);
    ny_logger_t* logger = nullptr;
    ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
    const std::string function = GetParam();
    client->msgbus = function == "ny_client_handler_set_msgbus" ? other->msgbus.load() : nullptr;
    client->logger = function == "ny_client_handler_set_logger" ? logger : nullptr;
    ny_sim_clear_calls();
    ASSERT_EQ(ny_sim_fail_call(GetParam(), 1, 66, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(AnsweredCalls(), testing::Contains(function + " 66"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: ny client is started."));
    EXPECT_EQ(ny_sim_started_clients(), 2U);
    Release();
    NyClientRelease(other);
    ny_sim_logger_release(logger);
}

INSTANTIATE_TEST_SUITE_P(Each, NyClientSetting,
                         testing::Values("ny_client_handler_set_msgbus",
                                         "ny_client_handler_set_msgbus_passphrase_callback",
                                         "ny_client_handler_set_thread_option", "ny_client_handler_set_logger",
                                         "ny_client_handler_set_logger_callback", "ny_client_handler_get_msgbus"),
                         [](const auto& setting) { return std::string(setting.param); });

TEST_F(NyClientStartTest, WithoutAMessageBusAsksForItAtTheNextStart) {
    ny_sim_fail_call("ny_client_handler_get_msgbus", 1, 66, NY_SIM_ONCE);
    ASSERT_EQ(NyClientStart(client), NY_OK);
    EXPECT_EQ(client->msgbus.load(), nullptr);
    ASSERT_EQ(NyClientStop(client), NY_OK);
    ASSERT_EQ(NyClientStart(client), NY_OK);
    EXPECT_EQ(ny_sim_call_count("ny_client_handler_set_msgbus"), 0U);
    EXPECT_NE(client->msgbus.load(), nullptr);
}

TEST_F(NyClientStartTest, LoadsTheDispatcherThatAStopUnloaded) {
    ExpectNotifications();
    NotifyState(NyClientStateStarted);
    NotifyState(NyClientStateStopped);
    ASSERT_EQ(client->dispatcher, nullptr);
    lines.client.Take();
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_NE(client->dispatcher, nullptr);
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: ny client is started."));
}

TEST_F(NyClientStartTest, AnswersTheLoadersCodeWithoutADispatcher) {
    ExpectNotifications();
    NotifyState(NyClientStateStarted);
    NotifyState(NyClientStateStopped);
    lines.client.Take();
    {
        const FailingMemory memory;
        EXPECT_EQ(NyClientStart(client), NY_OUT_OF_MEMORY);
    }
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
    EXPECT_EQ(client->started.load(), 0U);
}

TEST_F(NyClientStartTest, AnswersThatTheFunctionIsMissingWithoutAnAgent) {
    environment.RemoveAgent();
    EXPECT_EQ(NyClientStart(client), NY_FUNCTION_MISSING);
    EXPECT_THAT(lines.client.Lines(), ElementsAre("2 ny_client: falied to start ny client."));
    EXPECT_EQ(client->started.load(), 0U);
}

TEST_F(NyClientStartTest, AnswersThatTheFunctionIsMissingWhenTheAgentExportsNothing) {
    environment.InstallAgent("5.7.1", "empty");
    EXPECT_EQ(NyClientStart(client), NY_FUNCTION_MISSING);
    EXPECT_THAT(lines.client.Lines(), ElementsAre("2 ny_client: falied to start ny client."));
}

}  // namespace
