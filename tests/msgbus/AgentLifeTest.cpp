// The agent is installed, upgraded, removed and installed again while products are in the bridge.
#include <thread>

#include "VsMsgbus.h"
#include "support/AgentFunctions.h"
#include "support/BridgeTest.h"
#include "support/Checkpoint.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class AgentLife : public BridgeTest {
protected:
    std::string InstalledFolder() { return environment.Installer().CurrentFolder().filename().string(); }

    void InstallAndWait(const std::string& version, const std::string& build = "full") {
        ny_sim_clear_calls();
        environment.InstallAgent(version, build);
        ASSERT_TRUE(WatcherCalls(registerProvider));
    }

    // The files go when the client is stopped: stopping loads a library that may not be loaded yet, and a failure to
    // load it would be one line more in the sink.
    void RemoveAndWait() {
        ny_sim_clear_calls();
        environment.Installer().DeleteVersion();
        ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
        environment.RemoveAgent();
    }

    Registration registration{"PRODUCT1000", collector};
};

TEST_F(AgentLife, IsFollowedFromInstallationToReinstallation) {
    environment.Installer().CreateAgentKey();
    const Product product("PRODUCT1000", &sink);
    EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
    InstallAndWait("5.7.0");
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    UpgradeAndWait("5.6.0", "older");
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    RemoveAndWait();
    EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    InstallAndWait("5.7.0");
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentLife, MovesToTheLibrariesOfEachUpgrade) {
    environment.InstallAgent("5.7.0");
    const Product product;
    EXPECT_EQ(LoadedAgentFolder(), InstalledFolder());
    for (const char* build : {"older", "full", "older"}) {
        UpgradeAndWait(std::string("5.7.0-") + build, build);
        EXPECT_EQ(LoadedAgentFolder(), InstalledFolder());
        EXPECT_EQ(Ask("PRODUCT1000"), answered);
    }
}

TEST_F(AgentLife, StopsTheOldClientAndStartsTheNewOneInThisOrder) {
    environment.InstallAgent();
    const Product product;
    UpgradeAndWait("5.7.1");
    EXPECT_THAT(
        AgentCalls(),
        ElementsAre("ny_msgbus_get_version", "ny_msgbus_disable_watcher", "ny_property_unregister_provider_callback",
                    "ny_client_handler_stop", "ny_client_handler_release", "ny_client_handler_create",
                    "ny_client_handler_set_msgbus_passphrase_callback", "ny_client_handler_set_thread_option",
                    "ny_client_handler_set_logger_callback", "ny_client_handler_start", "ny_client_handler_get_msgbus",
                    registerProvider));
}

// The second upgrade comes while the watcher is still at the first, and is not lost.
TEST_F(AgentLife, EndsWithTheLastOfTwoQuickUpgrades) {
    environment.InstallAgent("5.7.0");
    const Product product("PRODUCT1000", &sink);
    HeldAgentCall releasing("ny_client_handler_release");
    ny_sim_clear_calls();
    environment.UpgradeAgent("5.7.1", "older");
    ASSERT_TRUE(SeenByWatcher([&](auto limit) { return releasing.isInside.Wait(limit); }));
    environment.UpgradeAgent("5.7.2", "full");
    releasing.mayGoOn.Set();
    // Less than 15 seconds: after those the watcher would find even a change whose signal it has missed.
    ASSERT_EQ(ny_sim_wait_calls(registerProvider, 2, 10000), NY_OK);
    EXPECT_EQ(LoadedAgentFolder(), InstalledFolder());
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentLife, IsNotDisturbedByAVersionWrittenAgainUnchanged) {
    environment.InstallAgent("5.7.0");
    const Product product;
    environment.Installer().WriteVersion("5.7.0");
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(ny_sim_call_count("ny_client_handler_create"), 1U);
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
}

TEST_F(AgentLife, AttachesEveryProductAtEachStartInTheOrderOfTheirIds) {
    const OnPurpose mistakes{"ID-DIFFERS"};
    environment.InstallAgent();
    const Product second("BB");
    const Product third("aa");
    const Product first("AA");
    const Registration collectors[] = {Registration("BB", collector), Registration("aa", collector),
                                       Registration("AA", collector)};
    UpgradeAndWait("5.7.1", "full", 3);
    for (const char* id : {"AA", "BB", "aa"}) {
        EXPECT_EQ(Ask(id), answered) << id;
    }
}

TEST_F(AgentLife, ServesAProductThatEnteredWhileNoAgentWasThere) {
    environment.InstallAgent();
    const Product first("PRODUCT2000");
    RemoveAndWait();
    const Product product("PRODUCT1000", &sink);
    ASSERT_TRUE(product.IsEntered());
    EXPECT_EQ(product.Instance(), first.Instance());
    ny_sim_clear_calls();
    environment.InstallAgent("5.7.1");
    ASSERT_TRUE(WatcherCalls(registerProvider, 2));
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentLife, LetsTheLastProductLeaveAfterTheRemoval) {
    environment.InstallAgent();
    Product product("PRODUCT1000", &sink);
    RemoveAndWait();
    ny_sim_clear_calls();
    product.Exit();
    EXPECT_THAT(AgentCalls(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentLife, EndsWhenTheFilesGoAtTheSameTime) {
    environment.InstallAgent();
    const Product product;
    environment.RemoveAgent();
    ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
    EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
    InstallAndWait("5.7.1");
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
}

TEST_F(AgentLife, EndsWithTheAgentsKey) {
    environment.InstallAgent();
    const Product product;
    // A key that is gone before the watcher watches it is nothing to it but a key that is missing.
    UpgradeAndWait("5.7.1");
    ny_sim_clear_calls();
    environment.Installer().DeleteAgentKey();
    ASSERT_TRUE(WaitForAgentCalls("ny_client_handler_release"));
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
}

TEST_F(AgentLife, BeginsWithTheVersionNotWithTheKey) {
    environment.Installer().CreateAgentKey();
    environment.InstallAgent();
    environment.Installer().DeleteVersion();
    const Product product("PRODUCT1000", &sink);
    ASSERT_TRUE(product.IsEntered());
    EXPECT_THAT(AgentCalls(), IsEmpty());
    environment.Installer().WriteVersion("5.7.0");
    ASSERT_TRUE(WatcherCalls(registerProvider));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

// A thread that is inside the agent could not come back once the agent's libraries are unloaded.
class AgentLifeBusy : public AgentLife {
protected:
    // Upgrades the agent while `call`, on another thread, is held up in the agent's function `heldUp`.
    void UpgradeDuring(const char* heldUp, const std::function<void()>& call) {
        Event isStopping;
        const AgentHook stopping("ny_msgbus_disable_watcher", [&] { isStopping.Set(); });
        HeldAgentCall held(heldUp);
        std::thread caller(call);
        EXPECT_TRUE(held.isInside.Wait());
        ny_sim_clear_calls();
        environment.UpgradeAgent("5.7.1");
        EXPECT_TRUE(SeenByWatcher([&](auto limit) { return isStopping.Wait(limit); }));
        EXPECT_EQ(ny_sim_wait_calls("ny_client_handler_release", 1, 50), NY_SIM_TIMEOUT);
        held.mayGoOn.Set();
        caller.join();
        EXPECT_TRUE(WaitForAgentCalls("ny_client_handler_get_msgbus"));
    }
};

TEST_F(AgentLifeBusy, LetsAnExitFinishBeforeItIsUnloaded) {
    environment.InstallAgent();
    const Product staying("PRODUCT2000", nullptr, 0);
    Product product;
    UpgradeDuring("ny_property_unregister_provider_callback", [&] { product.Exit(); });
    EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
}

TEST_F(AgentLifeBusy, LetsAnEntryFinishBeforeItIsUnloadedAndServesItAfterwards) {
    environment.InstallAgent();
    const Product staying("PRODUCT2000", nullptr, 0);
    VsMsgbus* instance = nullptr;
    UpgradeDuring(registerProvider,
                  [&] { EXPECT_TRUE(VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, nullptr, &instance)); });
    ASSERT_TRUE(WaitForAgentCalls(registerProvider));
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
}

// The agent would go on calling the product that has left.
TEST_F(AgentLifeBusy, LetsGoOfAProductThatLeavesMeanwhileBeforeItsExitReturns) {
    environment.InstallAgent();
    const Product staying("PRODUCT2000", nullptr, 0);
    Product product;
    Event isOut;
    HeldAgentCall unregistering(unregisterProvider);
    environment.UpgradeAgent("5.7.1");
    ASSERT_TRUE(SeenByWatcher([&](auto limit) { return unregistering.isInside.Wait(limit); }));
    std::thread leaver([&] {
        product.Exit();
        EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
        isOut.Set();
    });
    EXPECT_FALSE(isOut.Wait(std::chrono::milliseconds(50)));
    unregistering.mayGoOn.Set();
    leaver.join();
}

// There the agent waits for the callback, and the callback must not wait for the agent.
TEST_F(AgentLifeBusy, LetsAProductLeaveAtOnceFromInsideTheCallbackThatItWaitsFor) {
    environment.InstallAgent();
    const Product staying("PRODUCT2000", nullptr, 0);
    Product product;
    Event isInside;
    Event isUnregistering;
    const AgentHook hook(unregisterProvider, [&] { isUnregistering.Set(); });
    std::chrono::steady_clock::duration taken{};
    collector.collect = [&](VsKitMsgbus::INYCollectProperties::ISet&) {
        isInside.Set();
        EXPECT_TRUE(isUnregistering.Wait());
        const auto begin = std::chrono::steady_clock::now();
        product.Exit();
        taken = std::chrono::steady_clock::now() - begin;
    };
    const AgentRequest request("PRODUCT1000");
    ASSERT_TRUE(isInside.Wait());
    ny_sim_clear_calls();
    environment.UpgradeAgent("5.7.1");
    ASSERT_TRUE(WatcherCalls("ny_client_handler_get_msgbus"));
    EXPECT_EQ(request.Answer(), NY_OK);
    EXPECT_LT(taken, std::chrono::seconds(10));
    EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
}

// The one test that waits for the watcher's own pause.
TEST_F(AgentLife, IsFoundAfterRealFifteenSecondsWhenItsKeyWasMissing) {
    const Product product("PRODUCT1000", &sink);
    ASSERT_TRUE(product.IsEntered());
    ASSERT_TRUE(sink.log.WaitForSize(2));
    environment.InstallAgent();
    ASSERT_TRUE(WaitForAgentCalls(registerProvider));
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_THAT(sink.log.Lines(),
                ElementsAre("3: NY log message, [ny_client] failed to open registry Corvane\\Agent\\, error <2>",
                            "3: NY log message, [ny_client] failed to open registry Corvane\\Agent\\, error(2), "
                            "waiting for registry key to be re-established"));
}

}  // namespace
