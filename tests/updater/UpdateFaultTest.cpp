// The agent functions that are called for updates, and registrations that answer an error; tests/flows has every call
// of a callback fail.
#include <initializer_list>

#include "support/KeptHandles.h"
#include "support/Services.h"
#include "updater/UpdateTest.h"

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

constexpr int32_t codes[] = {77, -5, NY_INVALID_ARGUMENT, NY_FUNCTION_MISSING};

using Calls = std::vector<std::string>;

// What a narrow text that comes from the agent costs.
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

TEST_F(UpdateFault, AtEntryIsToldAndRepairedByAnUpgrade) {
    const UpdateRegistration registration("PRODUCT2000", callback);
    for (const int32_t code : codes) {
        ASSERT_EQ(ny_sim_fail_call(registerUpdater, 1, code, NY_SIM_ONCE), NY_OK);
        const Product refused("PRODUCT2000", nullptr, VsMsgbusServiceUpdate);
        EXPECT_FALSE(refused.IsEntered());
        EXPECT_EQ(Update(NotifyCall("PRODUCT2000")), notCalled);
        ny_sim_clear_calls();
        environment.UpgradeAgent("5.7." + std::to_string(code));
        ASSERT_TRUE(WatcherCalls(registerUpdater, 2));
        EXPECT_EQ(Update(NotifyCall("PRODUCT2000")), notified);
    }
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(UpdateFault, AtTheExitOfOneProductLeavesTheOthers) {
    const UpdateRegistration registration(productId, callback);
    for (const int32_t code : codes) {
        Product leaving("PRODUCT2000", nullptr, VsMsgbusServiceUpdate);
        ASSERT_EQ(ny_sim_fail_call(unregisterUpdater, 1, code, NY_SIM_ONCE), NY_OK);
        // This Exit takes the sink away.
        leaving.Exit();
        EXPECT_EQ(Update(NotifyCall()), notified);
        UpgradeAgent("5.8." + std::to_string(code));
        EXPECT_EQ(Update(NotifyCall("PRODUCT2000")), notCalled);
    }
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(UpdateFault, AtAnUpgradeIsToldToTheSinkAndRepaired) {
    const UpdateRegistration registration(productId, callback);
    ASSERT_EQ(ny_sim_fail_call(unregisterUpdater, 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    UpgradeAgent("5.7.1");
    EXPECT_EQ(Update(NotifyCall()), notified);
    EXPECT_THAT(sink.log.Lines(), ElementsAre(NotReleasedLine(256, "77")));
}

TEST_F(UpdateFault, AtTheLastExitLeavesTheAgentNothingDeadToCall) {
    const UpdateRegistration registration(productId, callback);
    ASSERT_EQ(ny_sim_fail_call(unregisterUpdater, 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    product.Exit();
    ny_sim_clear_faults();
    EXPECT_EQ(Update(NotifyCall()), notCalled);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    const Product again(productId, nullptr, VsMsgbusServiceUpdate);
    EXPECT_EQ(Update(NotifyCall()), notified);
}

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
