// Entering the bridge.
#include "VsMsgbus.h"
#include "support/BridgeTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Entry : public BridgeTest {
protected:
    VsMsgbus* instance = nullptr;
};

TEST_F(Entry, StartsTheAgentsClientThatIsThere) {
    environment.InstallAgent();
    ASSERT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, &sink, &instance));
    EXPECT_NE(instance, nullptr);
    EXPECT_EQ(ny_sim_started_clients(), 1U);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Entry, IsNoFailureWithoutAnAgentAndFollowsItsInstallation) {
    environment.Installer().CreateAgentKey();
    ASSERT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, &sink, &instance));
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    environment.InstallAgent();
    ASSERT_TRUE(WatcherCalls("ny_property_register_provider_callback"));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
}

TEST_F(Entry, WithoutAProductIdIsFalseAndTouchesNothing) {
    const OnPurpose mistakes{"ENTRY-FAILED"};
    environment.InstallAgent();
    EXPECT_FALSE(VsMsgbusEntry(nullptr, VsMsgbusServiceProperty, &sink, &instance));
    EXPECT_EQ(instance, nullptr);
    EXPECT_THAT(AgentCalls(), IsEmpty());
    EXPECT_EQ(::GetModuleHandleA("ny_client.dll"), nullptr);
}

TEST_F(Entry, WithoutAPlaceForTheInstanceIsFalseAndTouchesNothing) {
    const OnPurpose mistakes{"ENTRY-FAILED"};
    environment.InstallAgent();
    EXPECT_FALSE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, &sink, nullptr));
    EXPECT_FALSE(VsMsgbusEntry(nullptr, VsMsgbusServiceProperty, &sink, nullptr));
    EXPECT_THAT(AgentCalls(), IsEmpty());
    EXPECT_EQ(::GetModuleHandleA("ny_client.dll"), nullptr);
}

TEST_F(Entry, WithNullsTakesNoSink) {
    const OnPurpose mistakes{"ENTRY-FAILED"};
    environment.InstallAgent();
    CapturingSink refused;
    EXPECT_FALSE(VsMsgbusEntry(nullptr, VsMsgbusServiceProperty, &refused, &instance));
    EXPECT_FALSE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, &refused, nullptr));
    const Product product("PRODUCT1000", &sink);
    ASSERT_EQ(ny_sim_emit_log(2, "core", "text"), NY_OK);
    EXPECT_THAT(refused.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [core] text"));
}

TEST_F(Entry, WithNullsLeavesTheSinkThatIsThere) {
    const OnPurpose mistakes{"ENTRY-FAILED"};
    environment.InstallAgent();
    CapturingSink refused;
    const Product product("PRODUCT1000", &sink);
    EXPECT_FALSE(VsMsgbusEntry(nullptr, 0, &refused, &instance));
    EXPECT_FALSE(VsMsgbusEntry("PRODUCT2000", 0, nullptr, nullptr));
    ASSERT_EQ(ny_sim_emit_log(2, "core", "text"), NY_OK);
    EXPECT_THAT(refused.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [core] text"));
}

TEST_F(Entry, GivesEveryProductTheSameInstanceAndOneAgentClient) {
    environment.InstallAgent();
    const Product first("PRODUCT1000");
    const Product second("PRODUCT2000");
    const Product third("PRODUCT3000");
    ASSERT_TRUE(first.IsEntered() && second.IsEntered() && third.IsEntered());
    EXPECT_EQ(first.Instance(), second.Instance());
    EXPECT_EQ(first.Instance(), third.Instance());
    EXPECT_EQ(ny_sim_call_count("ny_client_handler_create"), 1U);
    EXPECT_EQ(ny_sim_started_clients(), 1U);
}

TEST_F(Entry, GivesEveryProductTheSameInstanceWithoutAnAgent) {
    environment.Installer().CreateAgentKey();
    const Product first("PRODUCT1000");
    const Product second("PRODUCT2000");
    ASSERT_TRUE(first.IsEntered() && second.IsEntered());
    EXPECT_EQ(first.Instance(), second.Instance());
    EXPECT_THAT(AgentCalls(), IsEmpty());
}

TEST_F(Entry, OfALaterProductAttachesItAtOnceAndCallsTheAgentForNothingElse) {
    environment.InstallAgent();
    const Product first("PRODUCT1000");
    ny_sim_clear_calls();
    const Product second("PRODUCT2000");
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_property_register_provider_callback"));
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT2000"), 1);
}

TEST_F(Entry, OfTheSameProductTwiceRegistersItOnceWithTheAgent) {
    environment.InstallAgent();
    const Product first("PRODUCT1000");
    EXPECT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, nullptr, &instance));
    EXPECT_EQ(instance, first.Instance());
    EXPECT_EQ(ny_sim_call_count("ny_property_register_provider_callback"), 1U);
}

TEST_F(Entry, OfTheSameProductTwiceIsUndoneByOneExit) {
    environment.InstallAgent();
    Product product("PRODUCT1000");
    EXPECT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, nullptr, &instance));
    product.Exit();
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 0U);
}

TEST_F(Entry, TakesTheIdAsItIsByteForByte) {
    const OnPurpose mistakes{"ID-DIFFERS"};
    environment.InstallAgent();
    const Product upper("PRODUCT1000");
    const Product lower("product1000");
    const Product accented("\xC3\x9C-\xF0\x9F\x98\x80 %s\\");
    for (const Product* product : {&upper, &lower, &accented}) {
        EXPECT_EQ(ny_sim_has_property_provider(product->Id().c_str()), 1) << product->Id();
    }
    EXPECT_EQ(ny_sim_call_count("ny_property_register_provider_callback"), 3U);
}

TEST_F(Entry, CopiesTheId) {
    const OnPurpose mistakes{"ENTRY-NO-SINK"};
    environment.InstallAgent();
    char id[] = "PRODUCT1000";
    ASSERT_TRUE(VsMsgbusEntry(id, VsMsgbusServiceProperty, nullptr, &instance));
    id[0] = 'X';
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    EXPECT_EQ(ny_sim_has_property_provider(id), 0);
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
}

TEST_F(Entry, TakesAnEmptyId) {
    const OnPurpose mistakes{"ID-UNUSABLE"};
    environment.InstallAgent();
    const Product product("");
    ASSERT_TRUE(product.IsEntered());
    const Registration registration("", collector);
    EXPECT_EQ(Ask(""), answered);
}

TEST_F(Entry, GivesTheClientRecordUntilTheLastExit) {
    environment.InstallAgent();
    Product first("PRODUCT1000");
    VsMsgbusClientRecord* const record = GetMsgbusClient();
    EXPECT_NE(record, nullptr);
    const Product second("PRODUCT2000");
    first.Exit();
    EXPECT_EQ(GetMsgbusClient(), record);
}

}  // namespace
