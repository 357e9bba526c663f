// Where an agent client's log lines go.
#include "msgbus/client/NyClientFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NyClientLogTest : public NyClientFixture {
protected:
    ~NyClientLogTest() override { ny_sim_logger_release(logger); }

    void UseLogger() {
        ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
        client->logger = logger;
    }
    void LetGoOfLogger() {
        client->logger = nullptr;
        ny_sim_logger_release(logger);
        logger = nullptr;
    }
    std::vector<std::string> Logged() {
        std::vector<std::string> logged;
        const char* line = nullptr;
        for (size_t i = 0; ny_sim_logger_get(logger, i, &line) == NY_OK; ++i) {
            logged.emplace_back(line);
        }
        return logged;
    }

    ny_logger_t* logger = nullptr;
};

TEST_F(NyClientLogTest, SettingTheCallbackRefusesANullClient) {
    EXPECT_EQ(NyClientSetLogCallback(nullptr, ClientLines::Take, &lines), NY_INVALID_ARGUMENT);
}

TEST_F(NyClientLogTest, AreFormattedForTheCallbackWhoseAnswerIsReturned) {
    EXPECT_EQ(NyClientLog(client, 3, "module", "%s has %d%%", "it", 17), ClientLines::answer);
    EXPECT_THAT(lines.client.Lines(), ElementsAre("3 module: it has 17%"));
}

TEST_F(NyClientLogTest, AreCutAt2047Characters) {
    for (const size_t length : {size_t{2046}, size_t{2047}, size_t{2048}, size_t{5000}}) {
        const std::string text = std::string(length - 1, 'x') + '!';
        NyClientLog(client, 5, "m", "%s", text.c_str());
        const std::string kept = length <= 2047 ? text : std::string(2047, 'x');
        EXPECT_THAT(lines.client.Take(), ElementsAre("5 m: " + kept)) << length;
    }
}

TEST_F(NyClientLogTest, GoToTheAgentsLoggerWithoutACallback) {
    NyClientSetLogCallback(client, nullptr, nullptr);
    UseLogger();
    EXPECT_EQ(NyClientLog(client, 2, "module", "%s", "50%% of 7%d"), NY_OK);
    EXPECT_THAT(Logged(), ElementsAre("2|module||0||50%% of 7%d"));
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_log_v 0"));
    LetGoOfLogger();
}

TEST_F(NyClientLogTest, AnswerWhatTheAgentsLoggerAnswers) {
    NyClientSetLogCallback(client, nullptr, nullptr);
    UseLogger();
    ny_sim_fail_call("ny_log_v", 1, 99, NY_SIM_ONCE);
    EXPECT_EQ(NyClientLog(client, 2, "module", "text"), 99);
    LetGoOfLogger();
}

TEST_F(NyClientLogTest, GoToTheCallbackRatherThanTheLogger) {
    UseLogger();
    NyClientLog(client, 2, "module", "text");
    EXPECT_THAT(lines.client.Lines(), ElementsAre("2 module: text"));
    EXPECT_THAT(Logged(), IsEmpty());
    LetGoOfLogger();
}

TEST_F(NyClientLogTest, AreDroppedWithoutCallbackAndLogger) {
    NyClientSetLogCallback(client, nullptr, nullptr);
    EXPECT_EQ(NyClientLog(client, 2, "module", "text"), NY_OK);
    EXPECT_EQ(NyClientAgentLog(2, "module", "text", client), NY_OK);
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
}

TEST_F(NyClientLogTest, OfTheAgentArePassedOnAsTheyStand) {
    const std::string text(5000, '%');
    EXPECT_EQ(NyClientAgentLog(2, "agent", text.c_str(), client), ClientLines::answer);
    EXPECT_THAT(lines.client.Lines(), ElementsAre("2 agent: " + text));
}

TEST_F(NyClientLogTest, OfTheAgentGoToItsLoggerWithoutACallback) {
    NyClientSetLogCallback(client, nullptr, nullptr);
    UseLogger();
    EXPECT_EQ(NyClientAgentLog(4, "agent", "50%% of 7%d", client), NY_OK);
    EXPECT_THAT(Logged(), ElementsAre("4|agent||0||50%% of 7%d"));
    LetGoOfLogger();
}

TEST_F(NyClientLogTest, ComeFromAStartedAgentToo) {
    ASSERT_EQ(NyClientStart(client), NY_OK);
    lines.client.Take();
    ASSERT_EQ(ny_sim_emit_log(6, "agent", "50%d"), NY_OK);
    EXPECT_THAT(lines.client.Lines(), ElementsAre("6 agent: 50%d"));
}

TEST_F(NyClientLogTest, ComeFromTheDispatcherToo) {
    EXPECT_THAT(lines.dispatcher.Lines(), IsEmpty());
    ASSERT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(lines.dispatcher.Lines(), testing::Contains("5 dispatcher: ny_dispatcher_load returns <0>"));
}

// The dispatcher that an upgrade leaves behind is a new one.
TEST_F(NyClientLogTest, ComeFromTheDispatcherAfterAnUpgradeToo) {
    ExpectNotifications();
    NotifyState(NyClientStateStarted);
    NotifyState(NyClientStateStopped);
    ASSERT_EQ(client->dispatcher, nullptr);
    NotifyState(NyClientStateStarted);
    lines.dispatcher.Take();
    ASSERT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(lines.dispatcher.Lines(), testing::Contains("5 dispatcher: ny_dispatcher_load returns <0>"));
}

TEST_F(NyClientLogTest, EndWhenTheCallbackIsTakenAway) {
    NyClientSetLogCallback(client, nullptr, nullptr);
    ASSERT_EQ(NyClientStart(client), NY_OK);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
    EXPECT_THAT(lines.dispatcher.Lines(), IsEmpty());
}

TEST_F(NyClientLogTest, OfANullClientAreRefused) {
    EXPECT_EQ(NyClientLog(nullptr, 2, "module", "text"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(NyClientAgentLog(2, "module", "text", nullptr), NY_INVALID_ARGUMENT);
}

}  // namespace
