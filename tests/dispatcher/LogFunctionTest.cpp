// The agent's logging function with its arguments spelled out.
#include "dispatcher/DispatcherTest.h"
#include "dispatcher/groups/LoggerGroup.h"
#include "support/AgentCalls.h"

namespace {

class LogFunction : public DispatcherTest {
protected:
    void SetUp() override {
        DispatcherTest::SetUp();
        ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
    }

    void TearDown() override {
        ny_sim_logger_release(logger);
        DispatcherTest::TearDown();
    }

    Lines Printed() const {
        Lines lines;
        const char* line = nullptr;
        for (size_t i = 0; ny_sim_logger_get(logger, i, &line) == NY_OK; ++i) {
            lines.push_back(line);
        }
        return lines;
    }

    ny_logger_t* logger = nullptr;
};

TEST_F(LogFunction, PrintsItsArgumentsThroughTheAgent) {
    environment.InstallAgent();
    EXPECT_EQ(agent::ny_log(logger, 2, "module", "file.cpp", 42, "Function", "%s %d%% %llu %.1f", "text", -7,
                            0xFFFFFFFFFFFFFFFFULL, 0.5),
              NY_OK);
    EXPECT_EQ(agent::ny_log(logger, 6, "module", "file.cpp", 43, "Function", "%s", "100% of %s"), NY_OK);
    EXPECT_EQ(Printed(), (Lines{"2|module|file.cpp|42|Function|text -7% 18446744073709551615 0.5",
                                "6|module|file.cpp|43|Function|100% of %s"}));
    EXPECT_EQ(AgentCalls(), (Lines{"ny_log_v", "ny_log_v"}));
}

TEST_F(LogFunction, AnswersWhatTheAgentAnswers) {
    environment.InstallAgent();
    ASSERT_EQ(ny_sim_fail_call("ny_log_v", 1, 77, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(agent::ny_log(logger, 2, "module", "file.cpp", 42, "Function", "text"), 77);
}

TEST_F(LogFunction, AnswersFunctionMissingWithoutAnAgent) {
    EXPECT_EQ(agent::ny_log(logger, 2, "module", "file.cpp", 42, "Function", "%d", 1), NY_FUNCTION_MISSING);
    EXPECT_EQ(Printed(), Lines{});
}

}  // namespace
