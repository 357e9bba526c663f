// Errors of the agent for policies that are special; tests/flows has every call fail.
#include "policy/PolicyTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char twoOfEach[] = R"([
    {"softwareId": "PRODUCT1000", "feature": "F1", "category": "C1", "type": "T1", "name": "N1",
     "settingsObject": {"name": "P1", "intParameter": "1", "stringParameter": "a", "digest": "d1"},
     "sections": [{"name": "S1", "settings": {"x": "1", "y": "2"}}, {"name": "S2", "settings": {"z": "3"}}]},
    {"softwareId": "PRODUCT1000", "feature": "F2", "category": "C2", "type": "T2", "name": "N2",
     "settingsObject": {"name": "P2", "intParameter": "2", "stringParameter": "b", "digest": "d2"},
     "sections": [{"name": "S3", "settings": {"w": "4"}}]},
    {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "feature": "F", "category": "C", "type": "T", "name": "N",
     "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a", "digest": "u"},
     "sections": [{"name": "S", "settings": {"x": "1", "y": "2"}}, {"name": "R", "settings": {"z": "3"}}]}])";

class PolicyFault : public PolicyTest {};

TEST_F(PolicyFault, IsOnlyAnswered) {
    HoldPolicies(twoOfEach);
    ASSERT_EQ(ny_sim_fail_call("ny_policy_get", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    enforcer.enforce = [](IPolicyBag& bag) {
        NotingCallbacks callbacks;
        EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
        EXPECT_FALSE(bag.EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN"));
        EXPECT_EQ(Dump(bag), "");
    };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

// The end of an iteration is no error of the iterators, and an error like any other of all other functions.
TEST_F(PolicyFault, ThatIsTheEndOfAnIterationEndsThatIterationAlone) {
    HoldPolicies(twoOfEach);
    NotingCallbacks callbacks;
    ny_sim_fail_call("ny_policy_bag_setting_iterator_get_next", 2, NY_ITERATOR_END, NY_SIM_ONCE);
    Enforce([&](IPolicyBag& bag) {
        EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks));
        ny_sim_fail_call("ny_policy_get", 1, NY_ITERATOR_END, NY_SIM_ONCE);
        EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
    });
    EXPECT_THAT(callbacks.lines, testing::Not(testing::Contains("setting S1: y=2")));
    EXPECT_THAT(callbacks.lines, testing::Contains("setting S2: z=3"));
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre(std::string(iterationLine) + "14"));
}

TEST_F(PolicyFault, NamesTheProductThatWasAskedFor) {
    const OnPurpose mistakes{"WALK-OF-OTHER-ID"};
    NotingCallbacks callbacks;
    Enforce([&](IPolicyBag& bag) {
        ny_sim_fail_call("ny_policy_get", 1, -2147483647 - 1, NY_SIM_ONCE);
        EXPECT_FALSE(bag.EnumeratePolicies(L"\u00DC %s", &callbacks));
    });
    EXPECT_THAT(modulesSink.log.Lines(),
                ElementsAre("5: Failed to iterate the policy bag for product id \xC3\x9C %s, exception -2147483648"));
}

}  // namespace
