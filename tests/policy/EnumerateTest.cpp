// The walk over the machine's policies.
#include "policy/PolicyTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char twoPolicies[] = R"([
    {"softwareId": "PRODUCT1000", "feature": "F1", "category": "C1", "type": "T1", "name": "N1",
     "settingsObject": {"name": "P1", "intParameter": "1", "stringParameter": "a", "digest": "d1"},
     "sections": [{"name": "S1", "settings": {"x": "1", "y": 2}},
                  {"name": "S2", "settings": {"z": "3"}}]},
    {"softwareId": "PRODUCT1000", "feature": "F2", "category": "C2", "type": "T2", "name": "N2",
     "settingsObject": {"name": "P2", "intParameter": "2", "stringParameter": "b", "digest": "d2"},
     "sections": [{"name": "S3", "settings": {"w": "4"}}]},
    {"softwareId": "PRODUCT2000", "name": "of another product"},
    {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "name": "of a user"}])";

class Enumerate : public PolicyTest {};

TEST_F(Enumerate, TellsEveryItemInTheAgentsOrder) {
    HoldPolicies(twoPolicies);
    EXPECT_THAT(Walk(), ElementsAre("container F1|C1|T1|N1", "settings P1|1|a", "section S1", "setting S1: x=1",
                                    "setting S1: y=2", "settings P1|1|a", "section S2", "setting S2: z=3",
                                    "container F2|C2|T2|N2", "settings P2|2|b", "section S3", "setting S3: w=4"));
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Enumerate, WithoutPoliciesTellsNothingAndSucceeds) {
    EXPECT_THAT(Walk(), IsEmpty());
}

TEST_F(Enumerate, AsksForTheProductThatIsNamedAndNotForTheBagsOwn) {
    const OnPurpose mistakes{"WALK-OF-OTHER-ID"};
    HoldPolicies(twoPolicies);
    NotingCallbacks callbacks;
    Enforce([&](IPolicyBag& bag) {
        EXPECT_TRUE(bag.EnumeratePolicies(L"PRODUCT2000", &callbacks));
        EXPECT_TRUE(bag.EnumeratePolicies(L"product1000", &callbacks));
        EXPECT_TRUE(bag.EnumeratePolicies(L"", &callbacks));
    });
    EXPECT_THAT(callbacks.lines, ElementsAre("container (null)|(null)|(null)|of another product"));
}

TEST_F(Enumerate, AsksTheAgentAnewEachTime) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "before"}])");
    NotingCallbacks callbacks;
    Enforce([&](IPolicyBag& bag) {
        EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks));
        HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "after"}])");
        EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks));
    });
    EXPECT_THAT(callbacks.lines,
                ElementsAre("container (null)|(null)|(null)|before", "container (null)|(null)|(null)|after"));
}

TEST_F(Enumerate, PassesNullOnForWhatThePolicyLacks) {
    HoldPolicies(
        R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": [[null, null], ["x", null], [null, "1"]]}]}])");
    EXPECT_THAT(Walk(),
                ElementsAre("container (null)|(null)|(null)|(null)", "settings (null)|(null)|(null)", "section (null)",
                            "setting (null): (null)=(null)", "setting (null): x=(null)", "setting (null): (null)=1"));
}

// A text of one item must not appear in the next item, which lacks it.
TEST_F(Enumerate, PassesNullOnAlsoAfterATextOfTheSameKind) {
    HoldPolicies(R"([
        {"softwareId": "PRODUCT1000", "feature": "F", "category": "C", "type": "T", "name": "N",
         "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a"},
         "sections": [{"name": "S", "settings": [["x", "1"], ["y", null], [null, "2"]]}]},
        {"softwareId": "PRODUCT1000", "sections": [{}]}])");
    EXPECT_THAT(Walk(),
                ElementsAre("container F|C|T|N", "settings P|1|a", "section S", "setting S: x=1", "setting S: y=(null)",
                            "setting S: (null)=2", "container (null)|(null)|(null)|(null)",
                            "settings (null)|(null)|(null)", "section (null)"));
}

TEST_F(Enumerate, SkipsAContainerThatTheModuleDoesNotWant) {
    HoldPolicies(twoPolicies);
    EXPECT_THAT(Walk([](const std::string& line) { return !line.starts_with("container F1"); }),
                ElementsAre("container F1|C1|T1|N1", "container F2|C2|T2|N2", "settings P2|2|b", "section S3",
                            "setting S3: w=4"));
}

TEST_F(Enumerate, SkipsASectionWhoseSettingsObjectTheModuleDoesNotWant) {
    HoldPolicies(twoPolicies);
    EXPECT_THAT(Walk([](const std::string& line) { return !line.starts_with("settings P1"); }),
                ElementsAre("container F1|C1|T1|N1", "settings P1|1|a", "settings P1|1|a", "container F2|C2|T2|N2",
                            "settings P2|2|b", "section S3", "setting S3: w=4"));
}

TEST_F(Enumerate, SkipsASectionThatTheModuleDoesNotWant) {
    HoldPolicies(twoPolicies);
    EXPECT_THAT(
        Walk([](const std::string& line) { return line != "section S1"; }),
        ElementsAre("container F1|C1|T1|N1", "settings P1|1|a", "section S1", "settings P1|1|a", "section S2",
                    "setting S2: z=3", "container F2|C2|T2|N2", "settings P2|2|b", "section S3", "setting S3: w=4"));
}

TEST_F(Enumerate, LeavesASectionWhenTheModuleHasEnoughOfItsSettings) {
    HoldPolicies(twoPolicies);
    EXPECT_THAT(Walk([](const std::string& line) { return line != "setting S1: x=1"; }),
                ElementsAre("container F1|C1|T1|N1", "settings P1|1|a", "section S1", "setting S1: x=1",
                            "settings P1|1|a", "section S2", "setting S2: z=3", "container F2|C2|T2|N2",
                            "settings P2|2|b", "section S3", "setting S3: w=4"));
}

std::string PolicyOf(const std::string& category) {
    return R"({"softwareId": "PRODUCT1000", "category": ")" + category +
           R"(", "sections": [{"name": "S", "settings": {"bopEnabled": "1", "X": "2", "BopEnabled": "3"}}]})";
}

TEST_F(Enumerate, WithholdsOneSettingOfBufferOverflowPolicies) {
    HoldPolicies("[" + PolicyOf("QTP_BufferOverflow_Policies") + "]");
    EXPECT_THAT(Walk(),
                ElementsAre("container (null)|QTP_BufferOverflow_Policies|(null)|(null)",
                            "settings (null)|(null)|(null)", "section S", "setting S: X=2", "setting S: BopEnabled=3"));
}

TEST_F(Enumerate, WithholdsItOfNoOtherCategory) {
    for (const char* const category :
         {"QTP_General_Policies", "QTP_bufferoverflow_Policies", "QTP_BufferOverflow", ""}) {
        HoldPolicies("[" + PolicyOf(category) + "]");
        EXPECT_THAT(Walk(), testing::Contains("setting S: bopEnabled=1")) << category;
    }
}

TEST_F(Enumerate, RefusesNullWithoutAskingTheAgent) {
    HoldPolicies(twoPolicies);
    NotingCallbacks callbacks;
    Enforce([&](IPolicyBag& bag) {
        ny_sim_clear_calls();
        EXPECT_FALSE(bag.EnumeratePolicies(nullptr, &callbacks));
        EXPECT_FALSE(bag.EnumeratePolicies(wideId, nullptr));
        EXPECT_FALSE(bag.EnumerateUserPolicies(nullptr, &callbacks, L"user", L"domain"));
        EXPECT_FALSE(bag.EnumerateUserPolicies(wideId, nullptr, L"user", L"domain"));
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    });
    EXPECT_THAT(callbacks.lines, IsEmpty());
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
}

TEST_F(Enumerate, CanBeNestedInItself) {
    HoldPolicies(
        R"([{"softwareId": "PRODUCT1000", "name": "N", "sections": [{"name": "S", "settings": {"x": "1"}}]}])");
    NotingCallbacks inner;
    NotingCallbacks outer;
    Enforce([&](IPolicyBag& bag) {
        outer.answer = [&](const std::string&) {
            inner.lines.clear();
            EXPECT_TRUE(bag.EnumeratePolicies(wideId, &inner));
            return true;
        };
        EXPECT_TRUE(bag.EnumeratePolicies(wideId, &outer));
    });
    EXPECT_EQ(outer.lines.size(), 4U);
    EXPECT_EQ(inner.lines, outer.lines);
}

TEST_F(Enumerate, EndsAtAValueThatIsNoText) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": {"x": {"a": "table"}, "y": "1"}}]}])");
    NotingCallbacks callbacks;
    Enforce([&](IPolicyBag& bag) { EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks)); });
    EXPECT_THAT(callbacks.lines, ElementsAre("container (null)|(null)|(null)|(null)", "settings (null)|(null)|(null)",
                                             "section (null)"));
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre(std::string(iterationLine) + "1"));
}

TEST_F(Enumerate, TellsTextsOfEveryAlphabet) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "P\u00e4th %s \u4ea7",
                      "sections": [{"name": "\ud83d\ude00", "settings": {"\u0000hidden": "", "n\u00e9e": "\uffff\u0080"}}]}])");
    EXPECT_THAT(Walk(),
                ElementsAre("container (null)|(null)|(null)|P\xC3\xA4th %s \xE4\xBA\xA7",
                            "settings (null)|(null)|(null)", "section \xF0\x9F\x98\x80", "setting \xF0\x9F\x98\x80: =",
                            "setting \xF0\x9F\x98\x80: n\xC3\xA9\x65=\xEF\xBF\xBF\xC2\x80"));
}

// The whole value is converted; the zero in it ends what a zero-terminated text can show.
TEST_F(Enumerate, ShowsOfAValueWhatIsBeforeItsFirstZero) {
    HoldPolicies(
        R"([{"softwareId": "PRODUCT1000", "sections": [{"name": "S", "settings": {"x": "before\u0000after", "y": "1"}}]}])");
    EXPECT_THAT(Walk(), ElementsAre("container (null)|(null)|(null)|(null)", "settings (null)|(null)|(null)",
                                    "section S", "setting S: x=before", "setting S: y=1"));
}

class ThrowingCallbacks : public Enumerate {
protected:
    void SetUp() override { HoldPolicies(twoPolicies); }
};

// Nothing of the agent's is left held, at whichever item it is; AgentTest looks.
TEST_F(ThrowingCallbacks, EndTheWalkAndAreTheEnforcersOwnAffair) {
    const size_t items = Walk().size();
    for (size_t count = 1; count <= items; ++count) {
        size_t left = count;
        NotingCallbacks callbacks;
        callbacks.answer = [&](const std::string&) -> bool {
            if (--left == 0) {
                throw 42;
            }
            return true;
        };
        EXPECT_EQ(Enforce([&](IPolicyBag& bag) {
                      EXPECT_THROW(bag.EnumeratePolicies(wideId, &callbacks), int);
                      EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_BAG), 0U);
                      EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_ITERATOR), 0U);
                      EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 1U) << "the notification's own";
                  }),
                  NY_OK);
        EXPECT_EQ(callbacks.lines.size(), count);
    }
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(ThrowingCallbacks, ThatTheEnforcerLetsOutFailTheNotification) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    NotingCallbacks callbacks;
    callbacks.answer = [](const std::string&) -> bool { throw 42; };
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) { bag.EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN"); }), 3);
    EXPECT_THAT(sink.log.Lines(),
                ElementsAre("3: Failed to get the policy for product id PRODUCT1000 due to unknown exception"));
}

}  // namespace
