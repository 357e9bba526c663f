// Every slot of policy enforcement, called across the border.
#include "abi/AbiModuleTest.h"
#include "support/PolicyNotice.h"

namespace {

class PoliciesTest : public AbiModuleTest {
protected:
    PoliciesTest() : AbiModuleTest("Policies", VsMsgbusServicePolicy) {}
};

TEST_F(PoliciesTest, ReadsItsPolicies) {
    ASSERT_EQ(ny_sim_policies_from_json(R"([
        {"softwareId": "ABI1000", "feature": "F", "category": "C", "type": "T", "name": "N",
         "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a"},
         "sections": [{"name": "S", "settings": {"X": "1"}}]},
        {"softwareId": "ABI1000", "user": "DOMAIN\\user", "feature": "OfUser"}])"),
              NY_OK);
    EXPECT_EQ(PolicyNotice(id).Answer(), NY_OK);
    const std::string dump =
        "    Container FeatureId[F] pCatagoryId[C] pTypeId[T] pName[N]\n"
        "      Settings Name=[P] pIntParam[1] pStrParam[a]\n"
        "         Section Name=[S]\n"
        "             X=[1]\n";
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{
                                     "GetLogLevel",
                                     "EnforcePolicy ABI1000",
                                     "OnContainer F C T N",
                                     "OnSettings P 1 a",
                                     "OnSection S <null>",
                                     "OnSetting S X 1",
                                     "EnumeratePolicies answers 1",
                                     "OnContainer OfUser <null> <null> <null>",
                                     "EnumerateUserPolicies answers 1",
                                     "Dump gives " + std::to_string(dump.size()) + ": " + dump,
                                 }));
}

TEST_F(PoliciesTest, AreToldAgainWhenTheModuleAsks) {
    module.Call<decltype(ModuleEnforceLocally)>("ModuleEnforceLocally", Wide(id).c_str());
    EXPECT_TRUE(module.log.WaitFor("VsKitEnforceLocalPolicy answers 1"));
    EXPECT_TRUE(module.log.WaitFor("EnforcePolicy ABI1000"));
    EXPECT_TRUE(module.log.WaitFor("Dump gives 0: "));
}

}  // namespace
