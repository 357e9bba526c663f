// Every agent function that is called when products enter, when the agent is upgraded and when they leave answers an
// error.
#include <atomic>
#include <set>
#include <thread>

#include "msgbus/AgentFault.h"
#include "support/OnPurpose.h"

namespace {

constexpr char registerProvider[] = "ny_property_register_provider_callback";

// Each function once, in the order of the first calls.
std::vector<std::string> Distinct(const std::vector<std::string>& calls) {
    std::vector<std::string> functions;
    std::set<std::string> known;
    for (const std::string& function : calls) {
        if (known.insert(function).second) {
            functions.push_back(function);
        }
    }
    return functions;
}

std::vector<FaultRow> StartFaults() {
    return {
        {.function = "ny_client_handler_create",
         .lines = {notStartedLine},
         .linesOfRepair = {alreadyStoppedLine},
         .lastCall = "ny_client_handler_create"},
        {.function = "ny_client_handler_set_msgbus_passphrase_callback", .lines = {}},
        {.function = "ny_client_handler_set_thread_option", .lines = {}},
        {.function = "ny_client_handler_set_logger_callback", .lines = {}},
        {.function = "ny_client_handler_start",
         .lines = {notStartedLine},
         .linesOfRepair = {alreadyStoppedLine},
         .lastCall = "ny_client_handler_release",
         .lastCallCount = 2},
        {.function = "ny_client_handler_get_msgbus", .lines = {}},
        {.function = registerProvider, .lines = {}, .isEntered = false},
    };
}

std::vector<FaultRow> StopFaults() {
    return {
        {.function = "ny_msgbus_get_version", .lines = {}},
        {.function = "ny_msgbus_disable_watcher", .lines = {}},
        {.function = "ny_property_unregister_provider_callback", .lines = {notReleasedLine}},
        {.function = "ny_client_handler_stop", .lines = {notStoppedLine}},
        {.function = "ny_client_handler_release", .lines = {}, .keptHandles = 1},
    };
}

std::vector<FaultRow> UpgradeFaults() {
    std::vector<FaultRow> rows = StopFaults();
    for (const FaultRow& row : StartFaults()) {
        rows.push_back(row);
    }
    return rows;
}

// The same as at an upgrade, in another order: the last product is unregistered before everything else.
std::vector<FaultRow> ExitFaults() {
    std::vector<FaultRow> rows = StopFaults();
    std::swap(rows[1], rows[2]);
    std::swap(rows[0], rows[1]);
    return rows;
}

class FaultAtEntry : public FaultTest {};
class FaultAtUpgrade : public FaultTest {};
class FaultAtExit : public FaultTest {};
class FaultTables : public BridgeTest {};

TEST_F(FaultTables, NameEveryFunctionThatIsCalled) {
    environment.InstallAgent();
    Product product;
    EXPECT_EQ(Distinct(AgentCalls()), FunctionsOf(StartFaults()));
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(Distinct(AgentCalls()), FunctionsOf(UpgradeFaults()));
    ny_sim_clear_calls();
    product.Exit();
    EXPECT_EQ(Distinct(AgentCalls()), FunctionsOf(ExitFaults()));
}

TEST_P(FaultAtEntry, IsRepairedByAnUpgrade) {
    const OnPurpose mistakes{"ENTRY-FAILED"};
    Fail();
    const Product product("PRODUCT1000", &sink);
    EXPECT_EQ(product.IsEntered(), Row().isEntered);
    EXPECT_NE(product.Instance(), nullptr);
    EXPECT_EQ(sink.log.Take(), Expected(Row().lines));
    ExpectRepairByUpgrade();
}

TEST_P(FaultAtEntry, OfOneProductIsNoneOfALaterOne) {
    Fail(NY_SIM_ONCE);
    const Registration ofSecond("PRODUCT2000", collector);
    const Product first("PRODUCT1000", &sink);
    const Product second("PRODUCT2000");
    EXPECT_TRUE(second.IsEntered());
    EXPECT_EQ(first.Instance(), second.Instance());
    // A client that could not start serves no product until the agent is upgraded.
    const bool isStarted = Row().lines.empty();
    EXPECT_EQ(Ask("PRODUCT2000"), isStarted ? answered : notAsked);
    EXPECT_EQ(ny_sim_started_clients(), isStarted ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Every, FaultAtEntry, testing::Combine(testing::ValuesIn(StartFaults()), FaultCodes()),
                         NameOfFault);

TEST_P(FaultAtUpgrade, IsRepairedByAnother) {
    Product product("PRODUCT1000", &sink);
    ASSERT_TRUE(product.IsEntered());
    Fail();
    ny_sim_clear_calls();
    environment.UpgradeAgent("5.7.1", "older");
    ASSERT_TRUE(WatcherCalls(Row().lastCall != nullptr ? Row().lastCall : registerProvider, Row().lastCallCount));
    ASSERT_TRUE(sink.log.WaitForSize(Row().lines.size()));
    EXPECT_EQ(sink.log.Take(), Expected(Row().lines));
    ExpectRepairByUpgrade();
    product.Exit();
    EXPECT_EQ(kept.Release(), Row().keptHandles);
}

TEST_P(FaultAtUpgrade, IsRepairedByExitAndEntry) {
    Product product("PRODUCT1000", &sink);
    Fail();
    ny_sim_clear_calls();
    environment.UpgradeAgent("5.7.1", "older");
    ASSERT_TRUE(WatcherCalls(Row().lastCall != nullptr ? Row().lastCall : registerProvider, Row().lastCallCount));
    ny_sim_clear_faults();
    product.Exit();
    std::vector<std::string> lines = Expected(Row().lines);
    lines.insert(lines.end(), Row().linesOfRepair.begin(), Row().linesOfRepair.end());
    EXPECT_EQ(sink.log.Take(), lines);
    ExpectRepairByNewEntry();
    EXPECT_EQ(kept.Release(), Row().keptHandles);
}

INSTANTIATE_TEST_SUITE_P(Every, FaultAtUpgrade, testing::Combine(testing::ValuesIn(UpgradeFaults()), FaultCodes()),
                         NameOfFault);

// A product that leaves before others is out, whatever the agent answers; the others stay.
TEST_P(FaultAtExit, OfOneProductLeavesTheOther) {
    const Registration ofSecond("PRODUCT2000", collector);
    Product leaving("PRODUCT1000", &sink);
    const Product staying("PRODUCT2000");
    Fail();
    leaving.Exit();
    ny_sim_clear_faults();
    EXPECT_EQ(Ask("PRODUCT2000"), answered);
    EXPECT_EQ(sink.log.Lines(), std::vector<std::string>());
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
    EXPECT_EQ(Ask("PRODUCT2000"), answered);
}

INSTANTIATE_TEST_SUITE_P(Every, FaultAtExit, testing::Combine(testing::ValuesIn(ExitFaults()), FaultCodes()),
                         NameOfFault);

class AgentFault : public InstalledAgentTest {
protected:
    Registration registration{"PRODUCT1000", collector};
};

// The product is unregistered when it leaves, and whatever is left once more when the services end.
TEST_F(AgentFault, ThatPassesIsForgottenWhenTheLastProductLeaves) {
    Product product("PRODUCT1000", &sink);
    ny_sim_fail_call("ny_property_unregister_provider_callback", 1, 77, NY_SIM_ONCE);
    ny_sim_clear_calls();
    product.Exit();
    EXPECT_EQ(ny_sim_call_count("ny_property_unregister_provider_callback"), 2U);
    EXPECT_EQ(sink.log.Lines(), std::vector<std::string>());
}

TEST_F(AgentFault, OfOneProductAtAStopKeepsNoOtherRegistered) {
    const Registration ofSecond("PRODUCT2000", collector);
    const Product first("PRODUCT1000", &sink);
    const Product second("PRODUCT2000");
    ny_sim_fail_call("ny_property_unregister_provider_callback", 1, 77, NY_SIM_ONCE);
    UpgradeAndWait("5.7.1", "full", 2);
    EXPECT_EQ(ny_sim_call_count("ny_property_unregister_provider_callback"), 3U);
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_EQ(Ask("PRODUCT2000"), answered);
    EXPECT_EQ(sink.log.Lines(), std::vector<std::string>{NotReleasedLine(8192, "77")});
}

TEST_F(AgentFault, AtARegistrationOfOneProductEndsTheStartForThoseAfterIt) {
    const Registration ofSecond("PRODUCT2000", collector);
    const Product first("PRODUCT1000", &sink);
    const Product second("PRODUCT2000");
    ny_sim_fail_call(registerProvider, 1, 77, NY_SIM_ONCE);
    ny_sim_clear_calls();
    environment.UpgradeAgent("5.7.1");
    ASSERT_TRUE(WatcherCalls(registerProvider));
    UpgradeAndWait("5.7.2", "full", 2);
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_EQ(Ask("PRODUCT2000"), answered);
    EXPECT_EQ(sink.log.Lines(), std::vector<std::string>());
}

// An agent that neither unregisters a product nor releases its client may still call: it calls too late.
TEST_F(AgentFault, ThatKeepsEverythingAliveLeavesTheAgentNothingDeadToCall) {
    KeptHandles kept;
    Product product("PRODUCT1000", &sink);
    ny_sim_fail_call("ny_property_unregister_provider_callback", 1, 77, NY_SIM_FROM_THEN_ON);
    ny_sim_fail_call("ny_client_handler_release", 1, 77, NY_SIM_FROM_THEN_ON);
    product.Exit();
    ny_sim_clear_faults();
    EXPECT_EQ(ny_sim_emit_log(2, "core", "text"), NY_OK);
    EXPECT_EQ(Ask("PRODUCT1000"), std::vector<std::string>{"answer 3"});
    EXPECT_EQ(sink.log.Lines(), std::vector<std::string>());
    EXPECT_EQ(kept.Release(), 1U);
}

TEST_F(AgentFault, ThatKeepsItsClientMayLogWhileTheProductLeaves) {
    KeptHandles kept;
    Product product("PRODUCT1000", &sink);
    ny_sim_fail_call("ny_client_handler_release", 1, 77, NY_SIM_FROM_THEN_ON);
    std::atomic<bool> hasLeft = false;
    Event isLogging;
    std::thread agent([&] {
        while (!hasLeft) {
            EXPECT_EQ(ny_sim_emit_log(2, "core", "text"), NY_OK);
            isLogging.Set();
        }
    });
    EXPECT_TRUE(isLogging.Wait());
    product.Exit();
    hasLeft = true;
    agent.join();
    // The last line may be what keeps the client: a thread of the bridge's own then ends it.
    EXPECT_TRUE(WaitForAgentCalls("ny_client_handler_release"));
    ny_sim_clear_faults();
    sink.log.Take();
    EXPECT_EQ(ny_sim_emit_log(2, "core", "late"), NY_OK);
    EXPECT_THAT(sink.log.Lines(), testing::IsEmpty());
    EXPECT_EQ(kept.Release(), 1U);
}

}  // namespace
