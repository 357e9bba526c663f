// Walks over policies whose texts the agent misreports.
#include "policy/PolicyTest.h"
#include "support/MisreportedTexts.h"

using testing::ElementsAre;

namespace {

class MisreportedPolicy : public ProductTest {
protected:
    MisreportedPolicy() : ProductTest(VsMsgbusServicePolicy) {}

    // The lines that a walk tells the module, and its answer as the last line.
    Lines Walk(const std::string& policies) {
        HoldPolicies(policies);
        NotingCallbacks callbacks;
        Enforcer enforcer([&](IPolicyBag& bag) {
            try {
                const bool isWalked = bag.EnumeratePolicies(wideId, &callbacks);
                callbacks.lines.push_back(isWalked ? "answer true" : "answer false");
            } catch (...) {
                callbacks.lines.push_back("an exception");
            }
        });
        const EnforcerRegistration registration(productId, enforcer, &modulesSink);
        EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
        return callbacks.lines;
    }

    MisreportedTexts texts;
};

TEST_F(MisreportedPolicy, IsToldOnlyAsFarAsTheAgentsLengths) {
    EXPECT_THAT(Walk(R"([{"softwareId": "PRODUCT1000", "feature": "F|x", "category": "C|x", "type": "|x", "name": "N|x",
                          "settingsObject": {"name": "P|x", "intParameter": "1|x", "stringParameter": "a|x"},
                          "sections": [{"name": "S|x", "settings": {"M|x": "V|x", "|x": "|x", "O": "W|"}}]}])"),
                ElementsAre("container F|C||N", "settings P|1|a", "section S", "setting S: M=V",
                            "setting S: =", "setting S: O=W", "answer true"));
}

// Also when the text goes on behind it.
TEST_F(MisreportedPolicy, IsStillNotToldOfTheWithheldSetting) {
    EXPECT_THAT(Walk(R"([{"softwareId": "PRODUCT1000", "category": "QTP_BufferOverflow_Policies",
                          "sections": [{"name": "S", "settings": {"bopEnabled|x": "1", "X": "2"}}]}])"),
                ElementsAre("container (null)|QTP_BufferOverflow_Policies|(null)|(null)",
                            "settings (null)|(null)|(null)", "section S", "setting S: X=2", "answer true"));
}

TEST_F(MisreportedPolicy, HasAnEmptyTextWhereTheAgentGivesNone) {
    EXPECT_THAT(Walk(R"([{"softwareId": "PRODUCT1000", "name": "?", "settingsObject": {"name": "?"},
                          "sections": [{"name": "?", "settings": {"?": "V", "N": "?"}}]}])"),
                ElementsAre("container (null)|(null)|(null)|", "settings |(null)|(null)", "section ", "setting : =V",
                            "setting : N=", "answer true"));
}

TEST_F(MisreportedPolicy, EndsTheWalkWhereNoMemoryHoldsATextsLength) {
    const std::string ends[] = {
        R"("feature": "!")",
        R"("settingsObject": {"name": "!"}, "sections": [{"name": "S"}])",
        R"("sections": [{"name": "!"}])",
        R"("sections": [{"name": "S", "settings": {"!": "V"}}])",
        R"("sections": [{"name": "S", "settings": {"N": "!"}}])",
        R"("category": "QTP_BufferOverflow_Policies", "sections": [{"name": "S", "settings": {"!": "V"}}])",
        R"("category": "QTP_BufferOverflow_Policies", "sections": [{"name": "S", "settings": {"N": "!"}}])",
    };
    for (const std::string& end : ends) {
        const Lines lines = Walk(R"([{"softwareId": "PRODUCT1000", )" + end + "}]");
        EXPECT_EQ(lines.back(), "answer false") << end;
        EXPECT_EQ(modulesSink.log.Take(), Lines{std::string(iterationLine) + "4"}) << end;
        EXPECT_THAT(lines, testing::Not(testing::Contains(testing::StartsWith("setting "))));
    }
}

}  // namespace
