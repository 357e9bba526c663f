// How many calls to the agent a property request takes: numbers to be changed on purpose or not at all.
#include "property/PropertyTest.h"
#include "support/AgentCalls.h"

namespace {

class PropertyCost : public PropertyTest {
protected:
    // How many calls to the agent a request takes in which the module sets so many properties.
    size_t CallsOfRequest(size_t properties) {
        collector.collect = [properties](ISet& set) {
            for (size_t i = 0; i < properties; ++i) {
                EXPECT_TRUE(set.SetProperty(L"a path that fits into no string's own memory", L"name", L"value"));
            }
        };
        const Registration registration(productId, collector);
        ny_sim_clear_calls();
        EXPECT_EQ(AgentRequest(productId).Answer(), NY_OK);
        return ny_sim_call_count(nullptr);
    }
};

TEST_F(PropertyCost, IsFifteenAgentCallsForEachProperty) {
    const size_t few = CallsOfRequest(10);
    const size_t more = CallsOfRequest(110);
    EXPECT_EQ(more - few, 100 * 15U);
}

TEST_F(PropertyCost, IsSixAgentCallsForTheRequestItself) {
    EXPECT_EQ(CallsOfRequest(0), 6U);
}

}  // namespace
