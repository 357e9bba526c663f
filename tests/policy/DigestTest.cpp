// The digests of a product's policies.
#include "policy/PolicyTest.h"

namespace {

class Digest : public PolicyTest {
protected:
    std::string DigestOf(const char* id) {
        std::string digest;
        EXPECT_EQ(Enforce([&](IPolicyBag& bag) { digest = bag.GetDigest(id); }), NY_OK);
        EXPECT_THAT(modulesSink.log.Lines(), testing::IsEmpty());
        EXPECT_THAT(sink.log.Lines(), testing::IsEmpty());
        return digest;
    }
};

TEST_F(Digest, JoinsThoseOfAllPoliciesInTheAgentsOrder) {
    HoldPolicies(R"([
        {"softwareId": "PRODUCT1000", "settingsObject": {"digest": "zz"}},
        {"softwareId": "PRODUCT2000", "settingsObject": {"digest": "other"}},
        {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "settingsObject": {"digest": "user"}},
        {"softwareId": "PRODUCT1000"},
        {"softwareId": "PRODUCT1000", "settingsObject": {"digest": ""}},
        {"softwareId": "PRODUCT1000", "settingsObject": {"digest": "aa"}},
        {"softwareId": "PRODUCT1000", "settingsObject": {"digest": "zz"}}])");
    EXPECT_EQ(DigestOf("PRODUCT1000"), "zzaazz");
    EXPECT_EQ(DigestOf("PRODUCT2000"), "other");
}

TEST_F(Digest, OfNoPoliciesIsEmpty) {
    EXPECT_EQ(DigestOf("PRODUCT1000"), "");
    EXPECT_EQ(DigestOf(""), "");
}

TEST_F(Digest, OfNullIsEmptyWithoutAskingTheAgent) {
    Enforce([](IPolicyBag& bag) {
        ny_sim_clear_calls();
        EXPECT_EQ(bag.GetDigest(nullptr), "");
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    });
}

TEST_F(Digest, TakesItsIdAsUtf8) {
    HoldPolicies(R"([{"softwareId": "\u00dc-1", "settingsObject": {"digest": "umlaut"}}])");
    EXPECT_EQ(DigestOf("\xC3\x9C-1"), "umlaut");
}

TEST_F(Digest, AfterAnErrorHasThoseBeforeIt) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "settingsObject": {"digest": "first"}},
                     {"softwareId": "PRODUCT1000", "settingsObject": {"digest": "second"}}])");
    ASSERT_EQ(ny_sim_fail_call("ny_policy_uri_get_pso_digest", 2, 77, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(DigestOf("PRODUCT1000"), "first");
    EXPECT_EQ(DigestOf("PRODUCT1000"), "firstsecond");
}

}  // namespace
