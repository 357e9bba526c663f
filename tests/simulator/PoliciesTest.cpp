// The simulated agent's policies: what is held, and the iterators over it.
#include "simulator/PolicyFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PoliciesTest : public PolicySimulatorTest {
protected:
    template <auto getter>
    std::string Text(ny_policy_uri_t* uri) const {
        const char* text = "unset";
        EXPECT_EQ(Call<getter>(uri, &text), NY_OK);
        return text != nullptr ? text : "(null)";
    }

    // Everything in a bag, line by line.
    Lines Content(ny_policy_bag_t* bag) const {
        Lines lines;
        ny_policy_bag_iterator_t* const uris = Uris(bag);
        ny_policy_uri_t* uri = nullptr;
        int32_t code = NY_OK;
        while ((code = Call<&ny_policy_bag_uri_iterator_get_next>(uris, &uri)) == NY_OK) {
            lines.push_back(Text<&ny_policy_uri_get_feature>(uri) + "|" + Text<&ny_policy_uri_get_category>(uri) + "|" +
                            Text<&ny_policy_uri_get_type>(uri) + "|" + Text<&ny_policy_uri_get_name>(uri) + "|" +
                            Text<&ny_policy_uri_get_pso_name>(uri) + "|" + Text<&ny_policy_uri_get_pso_param_int>(uri) +
                            "|" + Text<&ny_policy_uri_get_pso_param_str>(uri) + "|" +
                            Text<&ny_policy_uri_get_pso_digest>(uri));
            AddSections(bag, uri, lines);
        }
        EXPECT_EQ(code, NY_ITERATOR_END);
        Release(uris);
        return lines;
    }

    void AddSections(ny_policy_bag_t* bag, ny_policy_uri_t* uri, Lines& lines) const {
        ny_policy_bag_iterator_t* sections = nullptr;
        EXPECT_EQ(Call<&ny_policy_bag_get_section_iterator>(bag, uri, &sections), NY_OK);
        const char* section = nullptr;
        while (Call<&ny_policy_bag_section_iterator_get_next>(sections, &section) == NY_OK) {
            lines.push_back(std::string("  ") + (section != nullptr ? section : "(null)"));
            AddSettings(bag, uri, section, lines);
        }
        Release(sections);
    }

    void AddSettings(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* section, Lines& lines) const {
        ny_policy_bag_iterator_t* settings = nullptr;
        EXPECT_EQ(Call<&ny_policy_bag_get_setting_iterator>(bag, uri, section, &settings), NY_OK);
        const char* name = nullptr;
        ny_variant_t* value = nullptr;
        while (Call<&ny_policy_bag_setting_iterator_get_next>(settings, &name, &value) == NY_OK) {
            lines.push_back(std::string("    ") + (name != nullptr ? name : "(null)") + "=" +
                            (value != nullptr ? TextOf(value) : "(null)"));
        }
        Release(settings);
    }

    Lines ContentFor(const char* softwareId, const char* user = nullptr) const {
        ny_policy_bag_t* const bag = Fetch(softwareId, user);
        Lines lines = Content(bag);
        Release(bag);
        return lines;
    }
};

constexpr char example[] = R"([
    {"softwareId": "PRODUCT1000", "feature": "F", "category": "C", "type": "T", "name": "N",
     "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a", "digest": "d"},
     "sections": [{"name": "S", "settings": {"x": "1", "y": 2, "z": true, "n": null}},
                  {"name": "R", "settings": [["x", "1"], ["x", "2"], [null, "3"]]},
                  {"settings": {"w": {"a": "table"}}}, {"name": "empty"}, {}]},
    {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "name": "U"},
    {"softwareId": "PRODUCT1000", "settingsObject": null, "sections": null, "feature": null},
    {"softwareId": "PRODUCT2000", "name": "other"}])";

TEST_F(PoliciesTest, AreHandedOutAsTheyWereWritten) {
    Hold(example);
    EXPECT_THAT(ContentFor("PRODUCT1000"),
                ElementsAre("F|C|T|N|P|1|a|d", "  S", "    x=1", "    y=2", "    z=true", "    n=(null)", "  R",
                            "    x=1", "    x=2", "    (null)=3", "  (null)", "    w=(no text)", "  empty", "  (null)",
                            "    w=(no text)",  // a name leads to the first section that has it
                            "(null)|(null)|(null)|(null)|(null)|(null)|(null)|(null)"));
    EXPECT_THAT(ContentFor("PRODUCT2000"), ElementsAre("(null)|(null)|(null)|other|(null)|(null)|(null)|(null)"));
}

TEST_F(PoliciesTest, AreThoseOfTheUriAlone) {
    Hold(example);
    EXPECT_THAT(ContentFor("PRODUCT1000", "DOMAIN\\user"),
                ElementsAre("(null)|(null)|(null)|U|(null)|(null)|(null)|(null)"));
    EXPECT_THAT(ContentFor("PRODUCT1000", "domain\\user"), IsEmpty());
    EXPECT_THAT(ContentFor("PRODUCT1000", ""), IsEmpty());
    EXPECT_THAT(ContentFor("product1000"), IsEmpty());
    EXPECT_THAT(ContentFor(""), IsEmpty());
}

TEST_F(PoliciesTest, AreReplacedAsAWholeAndForgottenByAReset) {
    Hold(example);
    ny_policy_bag_t* const before = Fetch("PRODUCT2000");
    Hold(R"([{"softwareId": "PRODUCT3000", "name": "new"}])");
    EXPECT_THAT(ContentFor("PRODUCT2000"), IsEmpty());
    EXPECT_THAT(Content(before), testing::SizeIs(1)) << "a bag keeps what it has";
    Release(before);
    EXPECT_THAT(ContentFor("PRODUCT3000"), testing::SizeIs(1));
    ny_sim_reset();
    EXPECT_THAT(ContentFor("PRODUCT3000"), IsEmpty());
}

TEST_F(PoliciesTest, InAnyOtherFormAreRefusedAndReplaceNothing) {
    Hold(example);
    for (const char* const json : {
             "",
             "{}",
             "[1]",
             "[{}]",
             R"([{"softwareId": null}])",
             R"([{"softwareId": 1}])",
             R"([{"softwareId": "P", "naem": "misspelt"}])",
             R"([{"softwareId": "P", "name": 1}])",
             R"([{"softwareId": "P", "settingsObject": "text"}])",
             R"([{"softwareId": "P", "settingsObject": {"value": "1"}}])",
             R"([{"softwareId": "P", "sections": {}}])",
             R"([{"softwareId": "P", "sections": ["S"]}])",
             R"([{"softwareId": "P", "sections": [{"setting": {}}]}])",
             R"([{"softwareId": "P", "sections": [{"settings": "text"}]}])",
             R"([{"softwareId": "P", "sections": [{"settings": [["x"]]}]}])",
             R"([{"softwareId": "P", "sections": [{"settings": [[1, "x"]]}]}])",
         }) {
        EXPECT_EQ(ny_sim_policies_from_json(json), NY_INVALID_ARGUMENT) << json;
    }
    EXPECT_EQ(ny_sim_policies_from_json(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_THAT(ContentFor("PRODUCT2000"), testing::SizeIs(1));
}

TEST_F(PoliciesTest, AreNotFetchedWithoutASoftwareId) {
    ny_policy_uri_t* uri = nullptr;
    ny_policy_bag_t* bag = nullptr;
    ASSERT_EQ(Call<&ny_policy_uri_create>(&uri), NY_OK);
    EXPECT_EQ(Call<&ny_policy_get>(client, uri, &bag), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_uri_set_software_id>(uri, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_uri_set_user>(uri, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(bag, nullptr);
    EXPECT_EQ(Text<&ny_policy_uri_get_name>(uri), "(null)");
    EXPECT_EQ(Call<&ny_policy_uri_release>(uri), NY_OK);
}

TEST_F(PoliciesTest, CountTheirHandles) {
    Hold(example);
    ny_policy_uri_t* const uri = Uri("PRODUCT1000");
    EXPECT_EQ(Call<&ny_policy_uri_add_ref>(uri), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 1U);
    EXPECT_EQ(Call<&ny_policy_uri_release>(uri), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 1U);
    ny_policy_bag_t* bag = nullptr;
    ASSERT_EQ(Call<&ny_policy_get>(client, uri, &bag), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_BAG), 1U);
    ny_policy_bag_iterator_t* const uris = Uris(bag);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_ITERATOR), 1U);
    Release(uris);
    Release(bag);
    EXPECT_EQ(Call<&ny_policy_uri_release>(uri), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 1U) << "the client";
}

TEST_F(PoliciesTest, LendTheirItemsUntilTheNext) {
    Hold(example);
    ny_policy_bag_t* const bag = Fetch("PRODUCT1000");
    ny_policy_bag_iterator_t* const uris = Uris(bag);
    ny_policy_uri_t* first = nullptr;
    ny_policy_uri_t* second = nullptr;
    const char* text = nullptr;
    ASSERT_EQ(Call<&ny_policy_bag_uri_iterator_get_next>(uris, &first), NY_OK);
    EXPECT_EQ(Call<&ny_policy_uri_release>(first), NY_INVALID_ARGUMENT) << "it is borrowed";
    ASSERT_EQ(Call<&ny_policy_bag_uri_iterator_get_next>(uris, &second), NY_OK);
    EXPECT_EQ(Call<&ny_policy_uri_get_name>(first, &text), NY_INVALID_ARGUMENT);
    // A reference of one's own outlives the loan.
    EXPECT_EQ(Call<&ny_policy_uri_add_ref>(second), NY_OK);
    EXPECT_EQ(Call<&ny_policy_bag_uri_iterator_get_next>(uris, &first), NY_ITERATOR_END);
    EXPECT_EQ(Call<&ny_policy_bag_uri_iterator_get_next>(uris, &first), NY_ITERATOR_END);
    EXPECT_EQ(Call<&ny_policy_uri_get_name>(second, &text), NY_OK);
    EXPECT_EQ(Call<&ny_policy_uri_set_software_id>(second, "PRODUCT2000"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_uri_release>(second), NY_OK);
    Release(uris);
    Release(bag);
    EXPECT_EQ(ny_sim_misuse_count(), 2U);
    ny_sim_reset();
}

TEST_F(PoliciesTest, LendTheirValuesUntilTheIteratorEnds) {
    Hold(example);
    ny_policy_bag_t* const bag = Fetch("PRODUCT1000");
    ny_policy_bag_iterator_t* const uris = Uris(bag);
    ny_policy_uri_t* uri = nullptr;
    ASSERT_EQ(Call<&ny_policy_bag_uri_iterator_get_next>(uris, &uri), NY_OK);
    ny_policy_bag_iterator_t* settings = nullptr;
    ASSERT_EQ(Call<&ny_policy_bag_get_setting_iterator>(bag, uri, "S", &settings), NY_OK);
    const char* name = nullptr;
    ny_variant_t* value = nullptr;
    ASSERT_EQ(Call<&ny_policy_bag_setting_iterator_get_next>(settings, &name, &value), NY_OK);
    EXPECT_EQ(TextOf(value), "1");
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_VARIANT), 0U);
    Release(settings);
    EXPECT_EQ(TextOf(value), "(no text)");
    EXPECT_EQ(ny_sim_misuse_count(), 1U);
    Release(uris);
    Release(bag);
    ny_sim_reset();
}

TEST_F(PoliciesTest, RefuseWhatDoesNotBelongTogether) {
    Hold(example);
    ny_policy_bag_t* const bag = Fetch("PRODUCT1000");
    ny_policy_bag_t* const other = Fetch("PRODUCT1000");
    ny_policy_uri_t* const made = Uri("PRODUCT1000");
    ny_policy_bag_iterator_t* const uris = Uris(bag);
    ny_policy_bag_iterator_t* iterator = nullptr;
    ny_policy_uri_t* uri = nullptr;
    const char* section = nullptr;
    ASSERT_EQ(Call<&ny_policy_bag_uri_iterator_get_next>(uris, &uri), NY_OK);
    EXPECT_EQ(Call<&ny_policy_bag_get_section_iterator>(other, uri, &iterator), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_bag_get_section_iterator>(bag, made, &iterator), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_bag_get_setting_iterator>(bag, uri, "missing", &iterator), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_bag_section_iterator_get_next>(uris, &section), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_bag_get_uri_iterator>(nullptr, &iterator), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_bag_get_uri_iterator>(bag, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(iterator, nullptr);
    EXPECT_EQ(Call<&ny_policy_uri_release>(made), NY_OK);
    Release(uris);
    Release(other);
    Release(bag);
}

}  // namespace
