// All policies of a product as one text.
#include "policy/PolicyTest.h"

namespace {

class DumpTest : public PolicyTest {
protected:
    std::string DumpAll() {
        std::string text;
        EXPECT_EQ(Enforce([&](IPolicyBag& bag) { text = Dump(bag); }), NY_OK);
        return text;
    }
};

TEST_F(DumpTest, HasOneLineForEachItem) {
    HoldPolicies(R"([
        {"softwareId": "PRODUCT1000", "feature": "F1", "category": "C1", "type": "T1", "name": "N1",
         "settingsObject": {"name": "P1", "intParameter": "1", "stringParameter": "a"},
         "sections": [{"name": "S1", "settings": {"N": "V", "M": ""}}, {"name": "", "settings": {"": "W"}}]},
        {"softwareId": "PRODUCT1000", "name": "N2"}])");
    EXPECT_EQ(DumpAll(),
              "    Container FeatureId[F1] pCatagoryId[C1] pTypeId[T1] pName[N1]\n"
              "      Settings Name=[P1] pIntParam[1] pStrParam[a]\n"
              "         Section Name=[S1]\n"
              "             N=[V]\n"
              "             M=[]\n"
              "      Settings Name=[P1] pIntParam[1] pStrParam[a]\n"
              "         Section Name=[]\n"
              "             =[W]\n"
              "    Container FeatureId[<null>] pCatagoryId[<null>] pTypeId[<null>] pName[N2]\n");
}

TEST_F(DumpTest, WritesNullInItsBrackets) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": [[null, null]]}]}])");
    EXPECT_EQ(DumpAll(),
              "    Container FeatureId[<null>] pCatagoryId[<null>] pTypeId[<null>] pName[<null>]\n"
              "      Settings Name=[<null>] pIntParam[<null>] pStrParam[<null>]\n"
              "         Section Name=[<null>]\n"
              "             <null>=[<null>]\n");
}

TEST_F(DumpTest, IsAnEmptyTextWithoutPolicies) {
    EXPECT_EQ(DumpAll(), "");
    EXPECT_THAT(modulesSink.log.Lines(), testing::IsEmpty());
}

TEST_F(DumpTest, IsOfTheMachineAndWithoutTheWithheldSetting) {
    HoldPolicies(R"([
        {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "name": "of a user"},
        {"softwareId": "PRODUCT1000", "category": "QTP_BufferOverflow_Policies",
         "sections": [{"name": "S", "settings": {"bopEnabled": "1", "X": "2"}}]}])");
    EXPECT_EQ(DumpAll(),
              "    Container FeatureId[<null>] pCatagoryId[QTP_BufferOverflow_Policies] pTypeId[<null>] pName[<null>]\n"
              "      Settings Name=[<null>] pIntParam[<null>] pStrParam[<null>]\n"
              "         Section Name=[S]\n"
              "             X=[2]\n");
}

TEST_F(DumpTest, TakesTextsAsTheyAre) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "100% \ud83d\ude00\n] pName["}])");
    EXPECT_EQ(DumpAll(),
              "    Container FeatureId[<null>] pCatagoryId[<null>] pTypeId[<null>] pName[100% \xF0\x9F\x98\x80\n] "
              "pName[]\n");
}

TEST_F(DumpTest, FreesWhatTheBufferHeld) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000"}])");
    Enforce([&](IPolicyBag& bag) {
        VsKitMsgbus::lpc_buffer buffer{};
        bag.Dump(&buffer);
        const uint64_t length = buffer.length;
        EXPECT_NE(length, 0U);
        // The leak checker of the native build would tell of the first text.
        bag.Dump(&buffer);
        EXPECT_EQ(buffer.length, length);
        HoldPolicies("[]");
        bag.Dump(&buffer);
        EXPECT_EQ(buffer.length, 0U);
        EXPECT_EQ(buffer.kind, VsKitMsgbus::lpc_buffer::WideText);
        EXPECT_EQ(*static_cast<wchar_t*>(buffer.data), L'\0');
        buffer.Release();
    });
}

TEST_F(DumpTest, LeavesNullAlone) {
    Enforce([](IPolicyBag& bag) {
        ny_sim_clear_calls();
        bag.Dump(nullptr);
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    });
}

TEST_F(DumpTest, HasTheLinesUntilTheAgentFails) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "N", "sections": [{"name": "S"}]},
                     {"softwareId": "PRODUCT1000", "name": "unreached"}])");
    ASSERT_EQ(ny_sim_fail_call("ny_policy_bag_uri_iterator_get_next", 2, 77, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(DumpAll(),
              "    Container FeatureId[<null>] pCatagoryId[<null>] pTypeId[<null>] pName[N]\n"
              "      Settings Name=[<null>] pIntParam[<null>] pStrParam[<null>]\n"
              "         Section Name=[S]\n");
    EXPECT_THAT(modulesSink.log.Lines(), testing::ElementsAre(std::string(iterationLine) + "77"));
}

}  // namespace
