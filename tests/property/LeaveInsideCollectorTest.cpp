// The last product leaves inside a collector: the property setter adds nothing more.
#include "property/PropertyTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LeaveInsideCollector : public PropertyTest {};

TEST_F(LeaveInsideCollector, OfTheLastProductEndsTheBridgeUnderTheCollector) {
    collector.collect = [this](ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
        product.Exit();
        EXPECT_NE(::GetModuleHandleA("ny_client.dll"), nullptr) << "the agent's thread returns into it";
        EXPECT_FALSE(set.SetProperty(L"path", L"name", L"value"));
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre("5: Failed to add property for name= value, exception 705"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)", "GetLogLevel"));
    EXPECT_EQ(Ask(productId), notAsked);
}

// The bag is of the client that is gone.
TEST_F(LeaveInsideCollector, AndEntryInsideTheSameCollectorLeaveTheSetterRefusing) {
    VsMsgbus* instance = nullptr;
    collector.collect = [&](ISet& set) {
        product.Exit();
        EXPECT_TRUE(VsMsgbusEntry("PRODUCT2000", VsMsgbusServiceProperty, nullptr, &instance));
        ny_sim_clear_calls();
        EXPECT_FALSE(set.SetProperty(L"path", L"name", L"value"));
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre("5: Failed to add property for name= value, exception 705"));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT2000", instance));
}

}  // namespace
