// Entering and leaving the bridge.
#include "VsMsgbus.h"
#include "support/AgentEnvironment.h"
#include "support/CapturingSink.h"

namespace {

class Entry : public AgentTest {
protected:
    CapturingSink sink;
    VsMsgbus* instance = nullptr;
};

TEST_F(Entry, StartsTheAgentsClientThatIsThere) {
    environment.InstallAgent();
    ASSERT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, &sink, &instance));
    EXPECT_NE(instance, nullptr);
    EXPECT_EQ(ny_sim_started_clients(), 1U);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
    EXPECT_THAT(sink.log.Lines(), testing::IsEmpty());
}

TEST_F(Entry, IsNoFailureWithoutAnAgentAndFollowsItsInstallation) {
    environment.Installer().CreateAgentKey();
    ASSERT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, &sink, &instance));
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    environment.InstallAgent();
    ASSERT_TRUE(WaitForAgentCalls("ny_property_register_provider_callback"));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
}

}  // namespace
