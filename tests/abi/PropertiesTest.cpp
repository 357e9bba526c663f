// Every slot of property collection, called across the border.
#include "abi/AbiModuleTest.h"

namespace {

class PropertiesTest : public AbiModuleTest {
protected:
    PropertiesTest() : AbiModuleTest("Properties", VsMsgbusServiceProperty) {}
};

TEST_F(PropertiesTest, AnswersTheAgentWithItsProperties) {
    EXPECT_EQ(Ask(id), (std::vector<std::string>{"answer 0", "General:Version=1.0"}));
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{"CollectProperties true", "SetProperty answers 1",
                                                           "SetProperty answers 0", "GetLogLevel"}));
}

TEST_F(PropertiesTest, SinkGetsTheAgentsErrorLines) {
    ASSERT_EQ(ny_sim_emit_log(2, "module", "message"), NY_OK);
    EXPECT_EQ(module.log.Take(), std::vector<std::string>{"Write 3: NY log message, [module] message"});
}

TEST_F(PropertiesTest, IsAskedNoMoreOnceItHasLeft) {
    EXPECT_TRUE(module.Exit(id));
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer " + std::to_string(NY_SIM_NOT_REGISTERED)});
    EXPECT_EQ(module.log.Take(), std::vector<std::string>{});
    ASSERT_TRUE(module.Enter(id, VsMsgbusServiceProperty));
}

}  // namespace
