// The threads, handles and sleeps of the bridge while the agent is there and nothing is to do.
#include <optional>

#include "VsMsgbus/Entry.h"
#include "library/BridgeImports.h"
#include "library/LoadedBridge.h"
#include "support/AgentEnvironment.h"

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class Rest : public AgentTest {
protected:
    void SetUp() override {
        environment.InstallAgent("5.7.0");
        // Once before: the C++ runtime keeps what it takes for this thread.
        Enter();
        Leave();
        imports.emplace();
        Enter();
        ASSERT_EQ(ny_sim_started_clients(), 1U);
        ASSERT_TRUE(imports->WaitUntilOneSleepsForEver());
    }
    void TearDown() override {
        Leave();
        AgentTest::TearDown();
    }
    void Leave() { bridge.Export<decltype(VsMsgbusExit)>("VsMsgbusExit")("PRODUCT1000", instance); }

    LoadedBridge bridge;
    std::optional<BridgeImports> imports;

private:
    void Enter() {
        ASSERT_TRUE(bridge.Export<decltype(VsMsgbusEntry)>("VsMsgbusEntry")("PRODUCT1000", VsMsgbusServiceProperty,
                                                                            nullptr, &instance));
    }

    VsMsgbus* instance = nullptr;
};

TEST_F(Rest, HasOneThreadWhichSleepsUntilTheAgentChanges) {
    EXPECT_EQ(imports->ThreadsCreated(), 1U);
    EXPECT_THAT(imports->Sleeps(), ElementsAre(INFINITE));
    EXPECT_FALSE(imports->WakesUpWithin(2s));
    environment.UpgradeAgent("5.7.1");
    EXPECT_TRUE(WaitForAgentCalls("ny_property_register_provider_callback", 3));
    // A change of the folder may wake it once more.
    EXPECT_TRUE(WaitUntil([this] { return !imports->WakesUpWithin(200ms); }));
    EXPECT_THAT(imports->Sleeps(), ElementsAre(INFINITE));
    EXPECT_EQ(imports->ThreadsCreated(), 1U);
    Leave();
    EXPECT_THAT(imports->Sleeps(), IsEmpty());
}

TEST_F(Rest, HasTheWatchersFourHandlesAndGivesThemBack) {
    EXPECT_THAT(imports->Handles(), ElementsAre("event", "event", "key", "thread"));
    Leave();
    EXPECT_THAT(imports->Handles(), IsEmpty());
}

}  // namespace
