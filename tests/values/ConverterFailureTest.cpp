// Every agent call of every converter, answered with an error; and no agent at all.
#include <algorithm>
#include <ostream>

#include "values/AgentTables.h"
#include "values/AgentTexts.h"
#include "values/BorrowedText.h"
#include "values/ValuesTest.h"

namespace {

using testing::IsEmpty;

// The arguments of a converter.
struct Inputs {
    VariantOwner text;
    VariantOwner tableVariant;
    TableOwner table;
    ArrayOwner keys;
};

struct Converter {
    const char* name;
    void (*run)(const Inputs& inputs);
    Calls failing;  // its agent calls that may fail, in order
};

// How CTest names the cases.
void PrintTo(const Converter& converter, std::ostream* out) {
    *out << converter.name;
}

const Converter converters[] = {
    {"NarrowFromVariant",
     [](const Inputs& inputs) { NarrowFromVariant(inputs.text.Get()); },
     {"ny_variant_get_string_buffer", "ny_buffer_get_string", "ny_buffer_get_string"}},
    {"WideFromVariant",
     [](const Inputs& inputs) { WideFromVariant(inputs.text.Get()); },
     {"ny_variant_get_wstring_buffer", "ny_wbuffer_get_string", "ny_wbuffer_get_string"}},
    {"TextVariantOfNarrow",
     [](const Inputs&) { TextVariant(LookUpTextFunctions(), std::string_view("text")); },
     {"ny_variant_create_from_string"}},
    {"TextVariantOfWide",
     [](const Inputs&) { TextVariant(LookUpTextFunctions(), std::wstring_view(L"text")); },
     {"ny_variant_create_from_wstring"}},
    {"BorrowedNarrow",
     [](const Inputs&) { BorrowedNarrow(LookUpTextFunctions(), std::wstring_view(L"text")); },
     {"ny_variant_create_from_wstring", "ny_variant_get_string_buffer", "ny_buffer_get_string",
      "ny_buffer_get_string"}},
    {"BorrowedWide",
     [](const Inputs&) { BorrowedWide(LookUpTextFunctions(), std::string_view("text")); },
     {"ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string",
      "ny_wbuffer_get_string"}},
    {"BorrowedWideOfVariant",
     [](const Inputs& inputs) { BorrowedWide(LookUpTextFunctions(), inputs.text.Get()); },
     {"ny_variant_get_wstring_buffer", "ny_wbuffer_get_string", "ny_wbuffer_get_string"}},
    {"WideFromNarrow",
     [](const Inputs&) { WideFromNarrow("text"); },
     {"ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string",
      "ny_wbuffer_get_string"}},
    {"NarrowFromWide",
     [](const Inputs&) { NarrowFromWide(L"text"); },
     {"ny_variant_create_from_wstring", "ny_variant_get_string_buffer", "ny_buffer_get_string",
      "ny_buffer_get_string"}},
    {"TableFromVariant",
     [](const Inputs& inputs) { AgentTables().FromVariant(inputs.tableVariant.Get()); },
     {"ny_variant_get_table"}},
    {"TableValue",
     [](const Inputs& inputs) { AgentTables().Value(inputs.table.Get(), L"key"); },
     {"ny_table_get_wvalue"}},
    {"TableKeys", [](const Inputs& inputs) { AgentTables().Keys(inputs.table.Get()); }, {"ny_table_get_keys"}},
    {"ArraySize", [](const Inputs& inputs) { AgentTables().Size(inputs.keys.Get()); }, {"ny_array_size"}},
    {"ArrayElement",
     [](const Inputs& inputs) { AgentTables().Element(inputs.keys.Get(), 0); },
     {"ny_array_get_element_at"}},
};

class ConverterFailure : public ValuesTest, public testing::WithParamInterface<Converter> {
protected:
    static Inputs MakeInputs() {
        Inputs inputs{FromJson("\"text\""), FromJson(R"({"key": "value"})"), {}, {}};
        inputs.table = AgentTables().FromVariant(inputs.tableVariant.Get());
        inputs.keys = AgentTables().Keys(inputs.table.Get());
        return inputs;
    }

    // The call at `index` is this one among the calls of the same function, counted from 1.
    static uint32_t OccurrenceOf(const Calls& calls, size_t index) {
        const auto end = calls.begin() + static_cast<ptrdiff_t>(index) + 1;
        return static_cast<uint32_t>(std::count(calls.begin(), end, calls[index]));
    }
};

TEST_P(ConverterFailure, RaiseTheAgentsCodeAndLeaveNoHandleBehind) {
    environment.InstallAgent();
    const Inputs inputs = MakeInputs();
    const size_t before = ny_sim_live_handles(NY_SIM_ANY);
    const Calls& failing = GetParam().failing;
    for (size_t i = 0; i < failing.size(); ++i) {
        const int32_t code = 800 + static_cast<int32_t>(i);
        ASSERT_EQ(ny_sim_fail_call(failing[i].c_str(), OccurrenceOf(failing, i), code, NY_SIM_ONCE), NY_OK);
        ny_sim_clear_calls();
        EXPECT_EQ(CodeOf([&] { GetParam().run(inputs); }), code) << failing[i];
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), before) << failing[i];
        Calls made = AgentCalls();
        ASSERT_GE(made.size(), i + 1);
        made.resize(i + 1);
        EXPECT_EQ(made, Calls(failing.begin(), failing.begin() + static_cast<ptrdiff_t>(i) + 1));
    }
}

TEST_P(ConverterFailure, NameEveryCallThatMayFail) {
    environment.InstallAgent();
    const Inputs inputs = MakeInputs();
    Calls made = CallsOf([&] { GetParam().run(inputs); });
    std::erase_if(made, [](const std::string& function) { return function.ends_with("_release"); });
    EXPECT_EQ(made, GetParam().failing);
}

TEST_P(ConverterFailure, WithoutAnAgentRaiseFunctionMissing) {
    EXPECT_EQ(CodeOf([] { GetParam().run({}); }), NY_FUNCTION_MISSING);
    EXPECT_THAT(AgentCalls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, ConverterFailure, testing::ValuesIn(converters),
                         [](const testing::TestParamInfo<Converter>& tested) { return tested.param.name; });

}  // namespace
