// Conversions between the agent's values and standard strings.
#include "values/AgentTables.h"
#include "values/AgentTexts.h"

#include "support/KeptHandles.h"
#include "values/BorrowedText.h"
#include "values/ValuesTest.h"

namespace {

using testing::ElementsAre;

class ConverterTest : public ValuesTest {
protected:
    void SetUp() override {
        ValuesTest::SetUp();
        environment.InstallAgent();
        functions = LookUpTextFunctions();
    }

    TextFunctions functions{};
};

TEST_F(ConverterTest, ReadNarrowTextWithTheLengthOfTheFirstCallAndTheTextOfTheSecond) {
    const VariantOwner variant = FromJson("\"text\"");
    std::string text;
    EXPECT_THAT(CallsOf([&] { text = NarrowFromVariant(variant.Get()); }),
                ElementsAre("ny_variant_get_string_buffer", "ny_buffer_get_string", "ny_buffer_get_string",
                            "ny_buffer_release"));
    EXPECT_EQ(text, "text");
}

TEST_F(ConverterTest, ReadWideTextInTheSameWay) {
    const VariantOwner variant = FromJson("\"text\"");
    std::wstring text;
    EXPECT_THAT(CallsOf([&] { text = WideFromVariant(variant.Get()); }),
                ElementsAre("ny_variant_get_wstring_buffer", "ny_wbuffer_get_string", "ny_wbuffer_get_string",
                            "ny_wbuffer_release"));
    EXPECT_EQ(text, L"text");
}

TEST_F(ConverterTest, MakeNarrowText) {
    EXPECT_THAT(CallsOf([&] { TextVariant(functions, std::string_view("text")); }),
                ElementsAre("ny_variant_create_from_string", "ny_variant_release"));
    EXPECT_EQ(NarrowFromVariant(TextVariant(functions, std::string_view("text")).Get()), "text");
}

TEST_F(ConverterTest, MakeWideText) {
    EXPECT_THAT(CallsOf([&] { TextVariant(functions, std::wstring_view(L"text")); }),
                ElementsAre("ny_variant_create_from_wstring", "ny_variant_release"));
    EXPECT_EQ(WideFromVariant(TextVariant(functions, std::wstring_view(L"text")).Get()), L"text");
}

TEST_F(ConverterTest, TurnLengthZeroIntoAnEmptyTextInEveryDirection) {
    EXPECT_EQ(NarrowFromVariant(TextVariant(functions, std::string_view("")).Get()), "");
    EXPECT_EQ(WideFromVariant(TextVariant(functions, std::wstring_view(L"")).Get()), L"");
    EXPECT_EQ(WideFromVariant(TextVariant(functions, std::string_view("")).Get()), L"");
    EXPECT_EQ(NarrowFromVariant(TextVariant(functions, std::wstring_view(L"")).Get()), "");
}

TEST_F(ConverterTest, KeepAZeroInTheMiddleInEveryDirection) {
    const std::string narrow("a\0b\0", 4);
    const std::wstring wide(L"a\0b\0", 4);
    EXPECT_EQ(NarrowFromVariant(TextVariant(functions, std::string_view(narrow)).Get()), narrow);
    EXPECT_EQ(WideFromVariant(TextVariant(functions, std::wstring_view(wide)).Get()), wide);
    EXPECT_EQ(WideFromVariant(TextVariant(functions, std::string_view(narrow)).Get()), wide);
    EXPECT_EQ(NarrowFromVariant(TextVariant(functions, std::wstring_view(wide)).Get()), narrow);
}

TEST_F(ConverterTest, TakeTheLengthThatTheyAreGivenNotTheTerminator) {
    EXPECT_EQ(NarrowFromVariant(TextVariant(functions, std::string_view("abcdef", 3)).Get()), "abc");
    EXPECT_EQ(WideFromVariant(TextVariant(functions, std::wstring_view(L"abcdef", 3)).Get()), L"abc");
}

TEST_F(ConverterTest, WidenAndNarrowThroughOneVariant) {
    const std::string narrow = "\xC3\xBC \xE2\x82\xAC \xF0\x9F\x98\x80";
    const std::wstring wide = L"\u00FC \u20AC \U0001F600";
    EXPECT_EQ(WideFromNarrow(narrow), wide);
    EXPECT_EQ(NarrowFromWide(wide), narrow);
    EXPECT_THAT(CallsOf([] { WideFromNarrow("text"); }),
                ElementsAre("ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string",
                            "ny_wbuffer_get_string", "ny_wbuffer_release", "ny_variant_release"));
    EXPECT_THAT(CallsOf([] { NarrowFromWide(L"text"); }),
                ElementsAre("ny_variant_create_from_wstring", "ny_variant_get_string_buffer", "ny_buffer_get_string",
                            "ny_buffer_get_string", "ny_buffer_release", "ny_variant_release"));
}

TEST_F(ConverterTest, ReadATablesValueByItsWideKey) {
    const VariantOwner variant = FromJson(R"({"name": "first", "n\u00FCmber": 42})");
    EXPECT_THAT(CallsOf([&] { AgentTables().FromVariant(variant.Get()); }),
                ElementsAre("ny_variant_get_table", "ny_table_release"));
    const TableOwner table = AgentTables().FromVariant(variant.Get());
    EXPECT_THAT(CallsOf([&] { AgentTables().Value(table.Get(), L"name"); }),
                ElementsAre("ny_table_get_wvalue", "ny_variant_release"));
    EXPECT_EQ(NarrowFromVariant(AgentTables().Value(table.Get(), L"name").Get()), "first");
    EXPECT_EQ(NarrowFromVariant(AgentTables().Value(table.Get(), L"n\u00FCmber").Get()), "42");
    EXPECT_EQ(CodeOf([&] { AgentTables().Value(table.Get(), L"Name"); }), NY_INVALID_ARGUMENT);
}

TEST_F(ConverterTest, ListATablesKeys) {
    const TableOwner table = AgentTables().FromVariant(FromJson(R"({"one": "1", "two": "2"})").Get());
    EXPECT_THAT(CallsOf([&] { AgentTables().Keys(table.Get()); }),
                ElementsAre("ny_table_get_keys", "ny_array_release"));
    const ArrayOwner keys = AgentTables().Keys(table.Get());
    EXPECT_THAT(CallsOf([&] { AgentTables().Size(keys.Get()); }), ElementsAre("ny_array_size"));
    ASSERT_EQ(AgentTables().Size(keys.Get()), 2U);
    EXPECT_THAT(CallsOf([&] { AgentTables().Element(keys.Get(), 0); }),
                ElementsAre("ny_array_get_element_at", "ny_variant_release"));
    EXPECT_EQ(NarrowFromVariant(AgentTables().Element(keys.Get(), 0).Get()), "one");
    EXPECT_EQ(NarrowFromVariant(AgentTables().Element(keys.Get(), 1).Get()), "two");
}

TEST_F(ConverterTest, HandTheIndexToTheAgentUnchanged) {
    const TableOwner table = AgentTables().FromVariant(FromJson(R"({"one": "1"})").Get());
    const ArrayOwner keys = AgentTables().Keys(table.Get());
    EXPECT_EQ(CodeOf([&] { AgentTables().Element(keys.Get(), 1); }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(CodeOf([&] { AgentTables().Element(keys.Get(), SIZE_MAX); }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(AgentTables().Size(AgentTables().Keys(AgentTables().FromVariant(FromJson("{}").Get()).Get()).Get()), 0U);
}

TEST_F(ConverterTest, RaiseTheAgentsCodeForAValueOfAnotherType) {
    const VariantOwner table = FromJson("{}");
    const VariantOwner text = FromJson("\"text\"");
    EXPECT_EQ(CodeOf([&] { NarrowFromVariant(table.Get()); }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(CodeOf([&] { WideFromVariant(table.Get()); }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(CodeOf([&] { AgentTables().FromVariant(text.Get()); }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(CodeOf([&] { NarrowFromVariant(nullptr); }), NY_INVALID_ARGUMENT);
}

TEST_F(ConverterTest, GiveTheValueAlsoWhenTheAgentRefusesToTakeTheBufferBack) {
    const VariantOwner variant = FromJson("\"kept\"");
    KeptHandles kept;
    ASSERT_EQ(ny_sim_fail_call("ny_buffer_release", 1, 66, NY_SIM_ONCE), NY_OK);
    ASSERT_EQ(ny_sim_fail_call("ny_wbuffer_release", 1, 66, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(NarrowFromVariant(variant.Get()), "kept");
    EXPECT_EQ(WideFromVariant(variant.Get()), L"kept");
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_BUFFER), 1U);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_WBUFFER), 1U);
    kept.Release();
}

}  // namespace
