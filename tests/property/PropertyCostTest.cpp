// How many calls of the agent's a property request takes: a number to be changed on purpose or not at all.
#include "property/PropertyTest.h"
#include "support/AgentCalls.h"

namespace {

class PropertyCost : public PropertyTest {
protected:
    // The agent calls of a request in which so many properties are set.
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
