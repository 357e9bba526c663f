// The bridge asks a module for its properties; those that were set before the module throws stay.
#include <climits>
#include <memory>

#include "property/PropertyTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Collect : public PropertyTest {};

TEST_F(Collect, WritesNothingForAnyLogLevel) {
    const Registration registration(productId, collector, &modulesSink);
    for (const int32_t level : {0, 3, 4, 5, INT_MAX, -1, INT_MIN}) {
        collector.getLogLevel = [level] { return level; };
        EXPECT_EQ(Ask(productId), answered);
        EXPECT_EQ(Ask(productId), answered);
    }
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Collect, CallsTheAgentForNothingWhenThereIsNoProperty) {
    Collector empty;
    const Registration registration(productId, empty);
    ny_sim_clear_calls();
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(AgentCalls(),
                ElementsAre("ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string",
                            "ny_wbuffer_get_string", "ny_wbuffer_release", "ny_variant_release"));
}

TEST_F(Collect, EndsWithoutTheLogLevelOfACollectorThatIsRemovedInside) {
    const OnPurpose mistakes{"REMOVE-INSIDE", "REMOVE-UNKNOWN"};
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"PRODUCT1000"));
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)"));
}

// Each request has a thread of its own, as the agent may have it.
TEST_F(Collect, AThousandTimesAtOnceIsThroughInGoodTime) {
    constexpr size_t count = 1000;
    constexpr std::chrono::seconds goodTime{10};
    Event mayLeave;
    collector.collect = [&](ISet&) { EXPECT_TRUE(mayLeave.Wait()); };
    const Registration registration(productId, collector);
    std::vector<std::unique_ptr<AgentRequest>> requests;
    for (size_t i = 0; i < count; ++i) {
        requests.push_back(std::make_unique<AgentRequest>(productId));
    }
    const auto begin = std::chrono::steady_clock::now();
    mayLeave.Set();
    for (const auto& request : requests) {
        EXPECT_EQ(request->Answer(), NY_OK);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, goodTime);
    EXPECT_EQ(collector.log.Lines().size(), 2 * count);
}

class CollectThrows : public PropertyTest {
protected:
    const OnPurpose usualMistakes{"CALLBACK-THREW"};
};

TEST_F(CollectThrows, AfterSomePropertiesWhichStay) {
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
        throw 42;
    };
    const Registration registration(productId, collector);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 3", "general:version=1.0"));
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)"));
}

TEST_F(CollectThrows, AndTheKeptSetterIsOutsideOfACollection) {
    const OnPurpose mistakes{"LENT-KEPT"};
    ISet* kept = nullptr;
    collector.collect = [&](ISet& set) {
        kept = &set;
        throw 42;
    };
    const Registration registration(productId, collector);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 3"));
    ASSERT_NE(kept, nullptr);
    EXPECT_FALSE(kept->SetProperty(L"general", L"version", L"1.0"));
}

}  // namespace
