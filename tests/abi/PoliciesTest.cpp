// Every slot of policy enforcement, called across the border.
#include "abi/AbiModuleTest.h"
#include "support/PolicyNotice.h"

namespace {

class PoliciesTest : public AbiModuleTest {
protected:
    PoliciesTest() : AbiModuleTest("Policies", VsMsgbusServicePolicy) {}
};

TEST_F(PoliciesTest, ReadsItsPolicies) {
    // Too long to stand in a string itself.
    const std::string digest(100, 'd');
    ASSERT_EQ(ny_sim_policies_from_json((R"([
        {"softwareId": "ABI1000", "feature": "F", "category": "C", "type": "T", "name": "N",
         "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a", "digest": ")" +
                                         digest + R"("},
         "sections": [{"name": "S", "settings": {"X": "1"}}]},
        {"softwareId": "ABI1000", "user": "DOMAIN\\user", "feature": "OfUser"}])")
                                            .c_str()),
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
                                     "GetDigestText answers 1 with kind 2",
                                     "TakeNarrowText gives " + digest,
                                     "Digest gives " + digest,
                                     "GetDigestText answers 0 for null",
                                 }));
}

TEST_F(PoliciesTest, AreToldAgainWhenTheModuleAsks) {
    module.Call<decltype(ModuleEnforceLocally)>("ModuleEnforceLocally", Wide(id).c_str());
    EXPECT_TRUE(module.log.WaitFor("VsKitEnforceLocalPolicy answers 1"));
    EXPECT_TRUE(module.log.WaitFor("EnforcePolicy ABI1000"));
    EXPECT_TRUE(module.log.WaitFor("Dump gives 0: "));
}

}  // namespace
