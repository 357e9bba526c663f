// The agent functions that are called for updates, and registrations that answer an error; tests/flows has every call
// of a callback fail.
#include <initializer_list>

#include "support/KeptHandles.h"
#include "updater/UpdateTest.h"

using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

using Calls = std::vector<std::string>;

// The agent's functions that the conversion of a narrow text of the agent's calls.
const Calls widening = {"ny_variant_create_from_string",
                        "ny_variant_get_wstring_buffer",
                        "ny_wbuffer_get_string",
                        "ny_wbuffer_get_string",
                        "ny_wbuffer_release",
                        "ny_variant_release"};
const Calls readingValue = {"ny_variant_get_wstring_buffer", "ny_wbuffer_get_string", "ny_wbuffer_get_string",
                            "ny_wbuffer_release"};
const Calls givingValue = {"ny_variant_create_from_wstring",
                           "ny_variant_get_string_buffer",
                           "ny_buffer_get_string",
                           "ny_buffer_get_string",
                           "ny_buffer_release",
                           "ny_variant_release",
                           "ny_variant_create_from_string"};

Calls Join(std::initializer_list<Calls> lists) {
    Calls joined;
    for (const Calls& list : lists) {
        joined.insert(joined.end(), list.begin(), list.end());
    }
    return joined;
}

class CallsOfUpdates : public UpdateTest {
protected:
    // The agent calls that the bridge makes for one call of the updater.
    Calls RecordedCalls(const std::string& call) {
        ny_sim_clear_calls();
        Update(call);
        return AgentCalls();
    }
};

TEST_F(CallsOfUpdates, AreThese) {
    EXPECT_THAT(RecordedCalls(NotifyCall()), ElementsAreArray(widening));
    EXPECT_THAT(RecordedCalls(EventCall()), IsEmpty());
    const UpdateRegistration registration(productId, callback);
    EXPECT_THAT(RecordedCalls(NotifyCall()), ElementsAreArray(Join({widening, widening, widening, widening})));
    EXPECT_THAT(RecordedCalls(SetCall()), ElementsAreArray(Join({widening, widening, widening, readingValue})));
    EXPECT_THAT(RecordedCalls(GetCall()), ElementsAreArray(Join({widening, widening, widening, givingValue})));
    EXPECT_THAT(RecordedCalls(EventCall()), IsEmpty());
}

class UpdateFault : public UpdateTest {};

// An agent that neither unregisters a product nor releases its client may still call.
TEST_F(UpdateFault, ThatKeepsTheClientAliveCallsTooLate) {
    product.Exit();
    KeptHandles kept;
    Product keptProduct(productId, nullptr, VsMsgbusServiceUpdate);
    const UpdateRegistration registration(productId, callback);
    ASSERT_EQ(ny_sim_fail_call(unregisterUpdater, 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    ASSERT_EQ(ny_sim_fail_call("ny_client_handler_release", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    keptProduct.Exit();
    ny_sim_clear_faults();
    EXPECT_EQ(Update(NotifyCall()), "answer 3, result 2");
    EXPECT_EQ(Update(SetCall()), "answer 3, result 1");
    EXPECT_EQ(Update(GetCall()), "answer 3, result 1");
    EXPECT_EQ(Update(EventCall()), "answer 3");
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
    EXPECT_EQ(kept.Release(), 1U);
}

}  // namespace
