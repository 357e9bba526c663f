// Policies through the C++ layer.
#include <stdexcept>

#include "cpp/LayerTest.h"
#include "support/OnPurpose.h"
#include "support/PolicyNotice.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

constexpr char policiesOfTwo[] = R"([
    {"softwareId": "PRODUCT1000", "feature": "F1", "category": "C1", "type": "T1", "name": "N1",
     "settingsObject": {"name": "P1", "intParameter": "1", "stringParameter": "a", "digest": "d1"},
     "sections": [{"name": "S1", "settings": {"x": "1", "y": 2}},
                  {"name": "S2", "settings": {"z": "3"}}]},
    {"softwareId": "PRODUCT1000", "name": "N2",
     "settingsObject": {"name": "P2", "digest": "d2"},
     "sections": [{"name": "S1", "settings": {"x": "4"}}]},
    {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "name": "N3",
     "sections": [{"name": "S3", "settings": {"u": "5"}}]}])";

std::string TextOf(const vsmsgbus::Setting& setting) {
    std::string text;
    for (const vsmsgbus::PolicyText part : {setting.feature, setting.category, setting.type, setting.policy,
                                            setting.settings, setting.intParam, setting.strParam, setting.section}) {
        text += (part.IsAbsent() ? "null" : Narrow(part)) + "|";
    }
    return text + Narrow(setting.name) + "=" + Narrow(setting.value);
}

class LayerPolicies : public LayerTest {
protected:
    LayerPolicies() { EXPECT_EQ(ny_sim_policies_from_json(policiesOfTwo), NY_OK); }

    // The answer that the agent gets from a product with this handler.
    int32_t Enforce(vsmsgbus::PoliciesHandler handler) {
        const vsmsgbus::Product product(id, Logged({.policies = std::move(handler)}));
        return PolicyNotice(id).Answer();
    }
};

TEST_F(LayerPolicies, AreWalkedSettingBySettingWithWhereTheyStand) {
    std::vector<std::string> seen;
    EXPECT_EQ(Enforce([&](vsmsgbus::Policies& policies) {
                  EXPECT_EQ(policies.ProductId(), L"PRODUCT1000");
                  policies.Walk([&](const vsmsgbus::Setting& setting) { seen.push_back(TextOf(setting)); });
              }),
              NY_OK);
    EXPECT_THAT(seen, ElementsAre("F1|C1|T1|N1|P1|1|a|S1|x=1", "F1|C1|T1|N1|P1|1|a|S1|y=2", "F1|C1|T1|N1|P1|1|a|S2|z=3",
                                  "null|null|null|N2|P2|null|null|S1|x=4"));
}

TEST_F(LayerPolicies, AreARangeThatMayBeKept) {
    vsmsgbus::SettingList kept;
    Enforce([&](vsmsgbus::Policies& policies) { kept = policies.Settings(); });
    std::vector<std::string> texts;
    for (const vsmsgbus::Setting& setting : kept) {
        texts.push_back(TextOf(setting));
    }
    EXPECT_THAT(texts, ElementsAre("F1|C1|T1|N1|P1|1|a|S1|x=1", "F1|C1|T1|N1|P1|1|a|S1|y=2",
                                   "F1|C1|T1|N1|P1|1|a|S2|z=3", "null|null|null|N2|P2|null|null|S1|x=4"));
    EXPECT_EQ(kept.size(), 4U);
    EXPECT_FALSE(kept.empty());
    EXPECT_EQ(kept[3].value, L"4");
}

TEST_F(LayerPolicies, OfAnySizeAreKept) {
    const std::string large(100000, 'v');
    ASSERT_EQ(ny_sim_policies_from_json((R"([{"softwareId": "PRODUCT1000", "name": "N", "sections": [{"name": "S",
        "settings": {"a": ")" + large + R"(", "b": "", "c": "after"}}]}])")
                                            .c_str()),
              NY_OK);
    vsmsgbus::SettingList kept;
    Enforce([&](vsmsgbus::Policies& policies) { kept = policies.Settings(); });
    ASSERT_EQ(kept.size(), 3U);
    EXPECT_EQ(Narrow(kept[0].value), large);
    EXPECT_EQ(kept[1].value, L"");
    EXPECT_EQ(kept[2].value, L"after");
}

TEST_F(LayerPolicies, EndWhereTheVisitorSays) {
    std::vector<std::string> seen;
    EXPECT_EQ(Enforce([&](vsmsgbus::Policies& policies) {
                  policies.Walk([&](const vsmsgbus::Setting& setting) {
                      seen.push_back(Narrow(setting.name));
                      return seen.size() < 2;
                  });
              }),
              NY_OK);
    EXPECT_THAT(seen, ElementsAre("x", "y"));
}

TEST_F(LayerPolicies, AreAMapOfASectionWhoseLastValueCounts) {
    Enforce([&](vsmsgbus::Policies& policies) {
        EXPECT_THAT(policies.Section("S1"), ElementsAre(Pair(L"x", L"4"), Pair(L"y", L"2")));
        EXPECT_THAT(policies.Section(L"s1"), IsEmpty());
    });
}

TEST_F(LayerPolicies, OfAUserAreAskedForByAccount) {
    Enforce([&](vsmsgbus::Policies& policies) {
        const vsmsgbus::SettingList list = policies.SettingsOfUser("user", L"DOMAIN");
        ASSERT_EQ(list.size(), 1U);
        EXPECT_EQ(list[0].value, L"5");
        EXPECT_TRUE(policies.SettingsOfUser("nobody", "DOMAIN").empty());
    });
}

TEST_F(LayerPolicies, AreDumpedAndHaveDigests) {
    Enforce([&](vsmsgbus::Policies& policies) {
        EXPECT_NE(policies.Dump().find(L"z"), std::wstring::npos);
        EXPECT_EQ(policies.Digests(), "d1d2");
    });
}

TEST_F(LayerPolicies, ThatTheAgentFailsToGiveAreAnErrorWithItsCode) {
    EXPECT_EQ(Enforce([&](vsmsgbus::Policies& policies) {
                  ny_sim_fail_call("ny_policy_get", 1, 77, NY_SIM_ONCE);
                  try {
                      policies.Walk([](const vsmsgbus::Setting& /*setting*/) {});
                      ADD_FAILURE() << "no error";
                  } catch (const vsmsgbus::Error& error) {
                      EXPECT_EQ(error.Code(), 77);
                      EXPECT_EQ(error.Doing(), "reading the policies of PRODUCT1000");
                  }
              }),
              NY_OK);
    EXPECT_THAT(lines.Lines(),
                ElementsAre("5: Failed to iterate the policy bag for product id PRODUCT1000, exception 77"));
}

TEST_F(LayerPolicies, LoseNothingWhenTheVisitorThrows) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    EXPECT_EQ(Enforce([&](vsmsgbus::Policies& policies) {
                  policies.Walk([](const vsmsgbus::Setting& /*setting*/) { throw std::runtime_error("enough"); });
              }),
              3);
    EXPECT_THAT(lines.Lines(),
                ElementsAre("3: the handler of policies threw: enough",
                            "3: Failed to get the policy for product id PRODUCT1000 due to unknown exception"));
}

TEST_F(LayerPolicies, AreToldAgainOnDemand) {
    LineLog told;
    const vsmsgbus::Product product(id, {.policies = [&](vsmsgbus::Policies& /*policies*/) { told.Add("told"); }});
    EXPECT_TRUE(product.EnforcePolicies());
    EXPECT_TRUE(told.WaitFor("told"));
}

}  // namespace
