// The agent functions that are called during a property request, and errors of theirs; tests/flows has every one of
// them fail.
#include <algorithm>
#include <iterator>
#include <string_view>
#include <tuple>

#include "property/PropertyTest.h"
#include "support/KeptHandles.h"
#include "support/OnPurpose.h"
#include "support/ThrowingSink.h"

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

// The agent's functions that one request calls to look the product up.
constexpr const char* lookUpCalls[] = {
    "ny_variant_create_from_string",
    "ny_variant_get_wstring_buffer",
    "ny_wbuffer_get_string",
    "ny_wbuffer_get_string",
    "ny_wbuffer_release",
    "ny_variant_release",
};

// The agent's functions that one SetProperty calls: those that convert the path, the name and the value, then the one
// that adds the property.
constexpr const char* setCalls[] = {
    "ny_variant_create_from_wstring",
    "ny_variant_get_string_buffer",
    "ny_buffer_get_string",
    "ny_buffer_get_string",
    "ny_variant_release",
    "ny_variant_create_from_wstring",
    "ny_variant_get_string_buffer",
    "ny_buffer_get_string",
    "ny_buffer_get_string",
    "ny_variant_release",
    "ny_variant_create_from_wstring",
    "ny_property_bag_add_property",
    "ny_variant_release",
    "ny_buffer_release",
    "ny_buffer_release",
};

// One call of such a list and the code that it answers.
using Parameter = std::tuple<size_t, int32_t>;

template <size_t count>
auto EachCall(const char* const (&)[count]) {
    return testing::Combine(testing::Range(size_t{0}, count), testing::Values(77, -5, 1, 705));
}

class CallFault : public PropertyTest, public testing::WithParamInterface<Parameter> {
protected:
    static int32_t Code() { return std::get<int32_t>(GetParam()); }

    // Makes the parameter's call of the list fail, counted from now.
    static void Fail(const char* const* calls) {
        const char* const function = calls[std::get<size_t>(GetParam())];
        const auto nth = std::count_if(calls, calls + std::get<size_t>(GetParam()) + 1,
                                       [&](const char* call) { return std::string_view(call) == function; });
        EXPECT_EQ(ny_sim_fail_call(function, static_cast<uint32_t>(nth), Code(), NY_SIM_ONCE), NY_OK);
    }

    // Releasing never fails for the bridge; what the agent then keeps is the agent's.
    static bool IsRelease(const char* const* calls) {
        return std::string_view(calls[std::get<size_t>(GetParam())]).ends_with("_release");
    }

    KeptHandles kept;
};

class SetPropertyFault : public CallFault {};
class PropertyCalls : public PropertyTest {};

TEST_F(PropertyCalls, AreTheseForALookUp) {
    ny_sim_clear_calls();
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(AgentCalls(), ElementsAreArray(lookUpCalls));
}

TEST_F(PropertyCalls, AreTheseForAProperty) {
    std::vector<std::string> calls;
    collector.collect = [&](ISet& set) {
        ny_sim_clear_calls();
        EXPECT_TRUE(set.SetProperty(L"path", L"name", L"value"));
        calls = AgentCalls();
    };
    const Registration registration(productId, collector);
    Ask(productId);
    EXPECT_THAT(calls, ElementsAreArray(setCalls));
}

TEST_P(SetPropertyFault, WithoutASinkIsOnlyAnswered) {
    const bool isSet = IsRelease(setCalls);
    collector.collect = [&](ISet& set) {
        Fail(setCalls);
        EXPECT_EQ(set.SetProperty(L"path", L"name", L"value"), isSet);
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(AgentRequest(productId).Answer(), NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    product.Exit();
    EXPECT_EQ(kept.Release(), isSet ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Every, SetPropertyFault, EachCall(setCalls));

class RefusedProperty : public PropertyTest {
protected:
    void SetUp() override {
        ASSERT_EQ(ny_sim_fail_call("ny_property_bag_add_property", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    }
};

TEST_F(RefusedProperty, IsNamedAsTheModuleGaveIt) {
    collector.collect = [](ISet& set) {
        EXPECT_FALSE(set.SetProperty(L"path", L"", L""));
        EXPECT_FALSE(set.SetProperty(nullptr, nullptr, L"value"));
        EXPECT_FALSE(set.SetProperty(L"path", L"%s n\u00E4me", L"100% \U0001F600"));
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(modulesSink.log.Lines(),
                ElementsAre("5: Failed to add property for = , exception 77",
                            "5: Failed to add property for = value, exception 77",
                            "5: Failed to add property for %s n\xC3\xA4me= 100% \xF0\x9F\x98\x80, exception 77"));
}

TEST_F(RefusedProperty, IsToldAtEveryLogLevel) {
    collector.collect = [](ISet& set) { EXPECT_FALSE(set.SetProperty(L"path", L"name", L"value")); };
    collector.getLogLevel = [] { return 0; };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_EQ(Ask(productId), nothing);
    collector.getLogLevel = [] { return 4; };
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_EQ(modulesSink.log.Lines(),
              std::vector<std::string>(3, "5: Failed to add property for name= value, exception 77"));
}

TEST_F(RefusedProperty, IsFalseAlsoWhenTheSinkThrows) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    ThrowingSink throwing;
    collector.collect = [](ISet& set) { EXPECT_FALSE(set.SetProperty(L"path", L"name", L"value")); };
    const Registration registration(productId, collector, &throwing);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

}  // namespace
