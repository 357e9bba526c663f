// The walk over one user's policies.
#include "policy/PolicyTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class UserPolicies : public PolicyTest {
protected:
    void SetUp() override {
        HoldPolicies(R"([
            {"softwareId": "PRODUCT1000", "name": "of the machine"},
            {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "name": "of the user"},
            {"softwareId": "PRODUCT1000", "user": "\\user", "name": "without a domain"},
            {"softwareId": "PRODUCT1000", "user": "DOMAIN\\", "name": "without a name"},
            {"softwareId": "PRODUCT1000", "user": "\\", "name": "of nobody"},
            {"softwareId": "PRODUCT1000", "user": "D\u00f6m\u00e4n\\\ud83d\ude00", "name": "of another alphabet"},
            {"softwareId": "PRODUCT2000", "user": "DOMAIN\\user", "name": "of another product"}])");
    }

    // The names of the policies of that account.
    Lines NamesFor(const wchar_t* user, const wchar_t* domain, const wchar_t* id = wideId) {
        NotingCallbacks callbacks;
        EXPECT_EQ(
            Enforce([&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumerateUserPolicies(id, &callbacks, user, domain)); }),
            NY_OK);
        Lines names;
        for (const std::string& line : callbacks.lines) {
            names.push_back(line.substr(line.rfind('|') + 1));
        }
        return names;
    }
};

TEST_F(UserPolicies, AreThoseOfDomainAndUser) {
    const OnPurpose mistakes{"WALK-OF-OTHER-ID"};
    EXPECT_THAT(NamesFor(L"user", L"DOMAIN"), ElementsAre("of the user"));
    EXPECT_THAT(NamesFor(L"user", L"DOMAIN", L"PRODUCT2000"), ElementsAre("of another product"));
    EXPECT_THAT(NamesFor(L"\U0001F600", L"D\u00F6m\u00E4n"), ElementsAre("of another alphabet"));
    EXPECT_THAT(NamesFor(L"DOMAIN", L"user"), IsEmpty());
    EXPECT_THAT(NamesFor(L"USER", L"DOMAIN"), IsEmpty());
}

TEST_F(UserPolicies, MayBeOfAnAccountWithEmptyParts) {
    EXPECT_THAT(NamesFor(L"user", L""), ElementsAre("without a domain"));
    EXPECT_THAT(NamesFor(L"", L"DOMAIN"), ElementsAre("without a name"));
    EXPECT_THAT(NamesFor(L"", L""), ElementsAre("of nobody"));
}

TEST_F(UserPolicies, TakeNullForEmpty) {
    EXPECT_THAT(NamesFor(L"user", nullptr), ElementsAre("without a domain"));
    EXPECT_THAT(NamesFor(nullptr, L"DOMAIN"), ElementsAre("without a name"));
    EXPECT_THAT(NamesFor(nullptr, nullptr), ElementsAre("of nobody"));
}

TEST_F(UserPolicies, AreNotAmongTheMachines) {
    EXPECT_THAT(Walk(), ElementsAre("container (null)|(null)|(null)|of the machine"));
}

// Only the machine's walk withholds it.
TEST_F(UserPolicies, ComeWithEverySetting) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "category": "QTP_BufferOverflow_Policies",
                      "sections": [{"name": "S", "settings": {"bopEnabled": "1", "X": "2"}}]}])");
    NotingCallbacks callbacks;
    Enforce([&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN")); });
    EXPECT_THAT(callbacks.lines,
                ElementsAre("container (null)|QTP_BufferOverflow_Policies|(null)|(null)",
                            "settings (null)|(null)|(null)", "section S", "setting S: bopEnabled=1", "setting S: X=2"));
}

TEST_F(UserPolicies, CanBeLeftAtEveryLevel) {
    const OnPurpose mistakes{"WALK-REFUSED"};
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "name": "N",
                      "sections": [{"name": "S", "settings": {"x": "1", "y": "2"}}]}])");
    const std::pair<const char*, size_t> lastLines[] = {
        {"container", 1}, {"settings", 2}, {"section", 3}, {"setting ", 4}};
    for (const auto& [unwanted, count] : lastLines) {
        NotingCallbacks callbacks;
        callbacks.answer = [begin = unwanted](const std::string& line) { return !line.starts_with(begin); };
        Enforce(
            [&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN")); });
        EXPECT_EQ(callbacks.lines.size(), count) << unwanted;
    }
}

}  // namespace
