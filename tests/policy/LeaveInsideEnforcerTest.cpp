// The last product leaves inside an enforcer: the bag gives nothing more, and a walk ends.
#include "policy/ExpectNothingFrom.h"
#include "policy/PolicyTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LeaveInsideEnforcer : public PolicyTest {
protected:
    void SetUp() override {
        HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "N", "settingsObject": {"digest": "d"}}])");
    }
};

TEST_F(LeaveInsideEnforcer, WithTheLastProductEndsTheBridgeUnderIt) {
    EXPECT_EQ(Enforce([this](IPolicyBag& bag) {
                  EXPECT_EQ(Dump(bag),
                            "    Container FeatureId[<null>] pCatagoryId[<null>] pTypeId[<null>] pName[N]\n");
                  product.Exit();
                  EXPECT_NE(::GetModuleHandleA("ny_client.dll"), nullptr) << "the agent's thread returns into it";
                  ExpectNothingFrom(bag);
              }),
              NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_SIM_NOT_REGISTERED);
    EXPECT_TRUE(AgentIsLetGo());
}

// The notification's uri, the walk's own uri, its bag and its iterator go back to the library that made them.
TEST_F(LeaveInsideEnforcer, WithTheLastProductInAWalkEndsTheWalkAndGivesItsHandlesBack) {
    NotingCallbacks callbacks;
    callbacks.answer = [this](const std::string&) {
        product.Exit();
        return true;
    };
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) { EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks)); }), NY_OK);
    EXPECT_THAT(callbacks.lines, testing::SizeIs(1));
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre(std::string(iterationLine) + "705"));
    EXPECT_TRUE(AgentIsLetGo());
}

// The bag is of the client that is gone, and the new client's policies are not its own.
TEST_F(LeaveInsideEnforcer, CanBeFollowedByEntryInsideTheSameEnforcer) {
    EXPECT_EQ(Enforce([this](IPolicyBag& bag) {
                  product.Exit();
                  VsMsgbus* instance = nullptr;
                  EXPECT_TRUE(VsMsgbusEntry("PRODUCT2000", VsMsgbusServicePolicy, nullptr, &instance));
                  ExpectNothingFrom(bag);
              }),
              NY_OK);
    const Product other("PRODUCT2000", nullptr, VsMsgbusServicePolicy);
    EXPECT_EQ(ny_sim_has_policy_callback(productId), 0);
    EXPECT_EQ(ny_sim_has_policy_callback("PRODUCT2000"), 1);
}

// A place in a walk: the beginning of the line that is noted there.
class LeaveAndEnterInsideWalk : public LeaveInsideEnforcer, public testing::WithParamInterface<const char*> {};

// The bag is of the client that is gone. Its handles go back to the library that made them.
TEST_P(LeaveAndEnterInsideWalk, EndsTheWalkAndGivesItsHandlesBack) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "N", "settingsObject": {"digest": "d"},
        "sections": [{"name": "s", "settings": [["name", "value"], ["other", "value"]]}]}])");
    VsMsgbus* instance = nullptr;
    NotingCallbacks callbacks;
    callbacks.answer = [&](const std::string& line) {
        if (line.starts_with(GetParam())) {
            product.Exit();
            EXPECT_TRUE(VsMsgbusEntry("PRODUCT2000", VsMsgbusServicePolicy, nullptr, &instance));
            ny_sim_clear_calls();
        }
        return true;
    };
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) { EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks)); }), NY_OK);
    EXPECT_THAT(AgentCalls(), testing::Each(testing::EndsWith("_release")));
    EXPECT_THAT(callbacks.lines.back(), testing::StartsWith(GetParam()));
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre(std::string(iterationLine) + "705"));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT2000", instance));
}

INSTANTIATE_TEST_SUITE_P(At, LeaveAndEnterInsideWalk, testing::Values("container", "settings", "section", "setting "),
                         [](const testing::TestParamInfo<const char*>& tested) {
                             return "a" + std::string(tested.param).substr(0, 7) + std::to_string(tested.index);
                         });

}  // namespace
