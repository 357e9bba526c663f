// Every slot of update notification, called across the border.
#include "abi/AbiModuleTest.h"
#include "support/AgentUpdate.h"

namespace {

class UpdatesTest : public AbiModuleTest {
protected:
    UpdatesTest() : AbiModuleTest("Updates", VsMsgbusServiceUpdate) {}
};

TEST_F(UpdatesTest, HearsOfAnUpdate) {
    EXPECT_EQ(Update(NotifyCall(id)), "answer 0, result 20");
    EXPECT_EQ(module.log.Take(), std::vector<std::string>{"UpdateNotify text 2, text 4, text 3, 7"});
}

TEST_F(UpdatesTest, GivesItsInformation) {
    EXPECT_EQ(Update(GetCall(id)), "answer 0, result 30, value <given>");
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{"GetProductInfo text 2, a key", "Set answers 1"}));
}

TEST_F(UpdatesTest, IsGivenItsInformation) {
    EXPECT_EQ(Update(SetCall(id)), "answer 0, result 40");
    EXPECT_EQ(module.log.Take(), std::vector<std::string>{"SetProductInfo text 2, a key, a value"});
}

}  // namespace
