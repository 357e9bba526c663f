// Text that the bridge allocates, read and released across the two C++ ABIs.
#include "abi/AbiModuleTest.h"

namespace {

class InformationTest : public AbiModuleTest {
protected:
    InformationTest() : AbiModuleTest("Properties", VsMsgbusServiceProperty) {}
};

TEST_F(InformationTest, ReadsInformation) {
    ASSERT_EQ(ny_sim_set_all_information(R"({"Version": "5.7.0.1", "AgentMode": "1"})"), NY_OK);
    module.Call<decltype(ModuleReadInformation)>("ModuleReadInformation");
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{
                                     "VsKitMsgbusGetInformation answers 1: 5.7.0.1",
                                     "released, kind 0",
                                     "VsKitMsgbusGetInfoByKeyName answers 0: 1 characters of kind 2",
                                     "VsKitMsgbusManagedMode answers 1: 1",
                                 }));
}

}  // namespace
