// How many calls to the agent a walk takes: numbers to be changed on purpose or not at all.
#include "policy/PolicyTest.h"
#include "policy/SettingCounter.h"

namespace {

// So many equal policies with so many sections and settings in each.
std::string JsonOf(size_t policies, size_t sections, size_t settings) {
    const auto repeat = [](size_t count, const std::string& item) {
        std::string all;
        for (size_t i = 0; i < count; ++i) {
            all += (i == 0 ? "" : ",") + item;
        }
        return "[" + all + "]";
    };
    const std::string section = R"({"name": "s", "settings": )" + repeat(settings, R"(["name", "value"])") + "}";
    return repeat(policies, R"({"softwareId": "PRODUCT1000", "feature": "f", "category": "c", "type": "t", "name": "n",
        "settingsObject": {"name": "o", "intParameter": "1", "stringParameter": "p", "digest": "d"}, "sections": )" +
                                repeat(sections, section) + "}");
}

class PolicyCost : public PolicyTest {
protected:
    // The agent calls that `read(bag)` makes.
    template <class Read>
    size_t CallsOf(const std::string& policies, Read read) {
        HoldPolicies(policies);
        size_t calls = 0;
        Enforce([&](IPolicyBag& bag) {
            ny_sim_clear_calls();
            read(bag);
            calls = ny_sim_call_count(nullptr);
        });
        return calls;
    }

    size_t CallsOfWalk(size_t policies, size_t sections, size_t settings) {
        SettingCounter callbacks;
        const size_t calls = CallsOf(JsonOf(policies, sections, settings),
                                     [&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks)); });
        EXPECT_EQ(callbacks.settings, policies * sections * settings);
        return calls;
    }
};

// The next one, its name widened, its value read.
TEST_F(PolicyCost, IsElevenAgentCallsForEachSetting) {
    EXPECT_EQ(CallsOfWalk(1, 1, 110) - CallsOfWalk(1, 1, 10), 100 * 11U);
}

TEST_F(PolicyCost, IsTheSameForAUsersSettingAndInADump) {
    const auto walkOfUser = [](IPolicyBag& bag) {
        SettingCounter callbacks;
        EXPECT_TRUE(bag.EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN"));
    };
    const auto forUser = [](size_t settings) {
        std::string json = JsonOf(1, 1, settings);
        return json.replace(json.find(R"("feature")"), 0, R"("user": "DOMAIN\\user", )");
    };
    EXPECT_EQ(CallsOf(forUser(110), walkOfUser) - CallsOf(forUser(10), walkOfUser), 100 * 11U);
    const auto dump = [](IPolicyBag& bag) { EXPECT_NE(Dump(bag), ""); };
    EXPECT_EQ(CallsOf(JsonOf(1, 1, 110), dump) - CallsOf(JsonOf(1, 1, 10), dump), 100 * 11U);
}

// The next one, three texts of its settings object and its name widened, and an iterator of settings.
TEST_F(PolicyCost, IsThirtyOneAgentCallsForEachSection) {
    EXPECT_EQ(CallsOfWalk(1, 22, 0) - CallsOfWalk(1, 2, 0), 20 * 31U);
}

// The next one, four texts read and widened, and an iterator of sections.
TEST_F(PolicyCost, IsThirtyTwoAgentCallsForEachPolicy) {
    EXPECT_EQ(CallsOfWalk(22, 0, 0) - CallsOfWalk(2, 0, 0), 20 * 32U);
}

TEST_F(PolicyCost, IsTwoAgentCallsForEachDigest) {
    const auto digest = [](IPolicyBag& bag) { EXPECT_NE(bag.GetDigest(productId), ""); };
    EXPECT_EQ(CallsOf(JsonOf(22, 0, 0), digest) - CallsOf(JsonOf(2, 0, 0), digest), 20 * 2U);
}

}  // namespace
