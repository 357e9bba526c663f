// Leaving the bridge.
#include <algorithm>
#include <chrono>
#include <map>
#include <memory>

#include "VsMsgbus.h"
#include "support/BridgeTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Order = std::vector<std::string>;

// Counted one by one: Wine's GetProcessHandleCount always says 0.
size_t HandlesOfThisProcess() {
    size_t count = 0;
    for (uintptr_t handle = 4; handle < 0x4000; handle += 4) {
        DWORD flags = 0;
        count += ::GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) ? 1U : 0U;
    }
    return count;
}

class Exit : public BridgeTest {
protected:
    // Enters all in one order and leaves in another; those inside are asked, those outside are not, after each step.
    void EnterAndLeave(const Order& entering, const Order& leaving);

    static std::vector<Order> Permutations(Order ids) {
        std::vector<Order> all;
        std::sort(ids.begin(), ids.end());
        do {
            all.push_back(ids);
        } while (std::next_permutation(ids.begin(), ids.end()));
        return all;
    }

    // Every order of entering with every order of leaving.
    void EnterAndLeaveInEveryOrder(const Order& ids) {
        for (const Order& entering : Permutations(ids)) {
            for (const Order& leaving : Permutations(ids)) {
                SCOPED_TRACE(testing::PrintToString(entering) + " then " + testing::PrintToString(leaving));
                EnterAndLeave(entering, leaving);
            }
        }
    }
};

void Exit::EnterAndLeave(const Order& entering, const Order& leaving) {
    std::map<std::string, std::unique_ptr<Product>> inside;
    const auto check = [&] {
        for (const std::string& id : entering) {
            EXPECT_EQ(Ask(id), inside.contains(id) ? answered : notAsked) << id;
        }
    };
    for (const std::string& id : entering) {
        inside[id] = std::make_unique<Product>(id);
        ASSERT_TRUE(inside[id]->IsEntered());
        EXPECT_EQ(inside[id]->Instance(), inside.begin()->second->Instance());
        check();
    }
    for (const std::string& id : leaving) {
        inside.erase(id);
        EXPECT_EQ(ny_sim_started_clients(), inside.empty() ? 0U : 1U);
        check();
    }
}

TEST_F(Exit, OfTwoProductsInEveryOrder) {
    environment.InstallAgent();
    const Registration first("A", collector);
    const Registration second("B", collector);
    EnterAndLeaveInEveryOrder({"A", "B"});
}

TEST_F(Exit, OfThreeProductsInEveryOrder) {
    environment.InstallAgent();
    const Registration first("A", collector);
    const Registration second("B", collector);
    const Registration third("C", collector);
    EnterAndLeaveInEveryOrder({"A", "B", "C"});
}

TEST_F(Exit, OfTheLastProductCallsTheAgentInThisOrder) {
    environment.InstallAgent();
    Product product;
    ny_sim_clear_calls();
    product.Exit();
    EXPECT_THAT(AgentCalls(),
                ElementsAre("ny_property_unregister_provider_callback", "ny_msgbus_get_version",
                            "ny_msgbus_disable_watcher", "ny_client_handler_stop", "ny_client_handler_release"));
}

TEST_F(Exit, OfOneOfTwoProductsOnlyUnregistersIt) {
    environment.InstallAgent();
    const Product staying("PRODUCT1000");
    Product leaving("PRODUCT2000");
    ny_sim_clear_calls();
    leaving.Exit();
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_property_unregister_provider_callback"));
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT2000"), 0);
}

TEST_F(Exit, LeavesAProductOutOfTheAgentsNextStart) {
    environment.InstallAgent();
    const Product staying("PRODUCT2000");
    Product leaving("PRODUCT1000");
    leaving.Exit();
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
}

TEST_F(Exit, ForAProductNeverEnteredLeavesTheOthers) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    environment.InstallAgent();
    const Registration registration("PRODUCT1000", collector);
    const Product product;
    ny_sim_clear_calls();
    EXPECT_TRUE(VsMsgbusExit("PRODUCT9000", product.Instance()));
    EXPECT_TRUE(VsMsgbusExit("product1000", product.Instance()));
    EXPECT_THAT(AgentCalls(), IsEmpty());
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
}

TEST_F(Exit, WithoutAnInstanceOnlyTakesTheSinkAway) {
    const OnPurpose mistakes{"EXIT-OTHER-INSTANCE"};
    environment.InstallAgent();
    const Product product("PRODUCT1000", &sink);
    ny_sim_clear_calls();
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", nullptr));
    EXPECT_THAT(AgentCalls(), IsEmpty());
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    ASSERT_EQ(ny_sim_emit_log(2, "core", "text"), NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Exit, WithoutAProductOnlyTakesTheSinkAway) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    environment.InstallAgent();
    const Product product("PRODUCT1000", &sink);
    EXPECT_TRUE(VsMsgbusExit(nullptr, product.Instance()));
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    ASSERT_EQ(ny_sim_emit_log(2, "core", "text"), NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Exit, WhereNoProductIsInIsTrue) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    EXPECT_TRUE(VsMsgbusExit(nullptr, nullptr));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", nullptr));
}

TEST_F(Exit, WithAnInstanceThatIsGoneIsTrueAndTouchesNothing) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    environment.InstallAgent();
    Product product;
    VsMsgbus* const gone = product.Instance();
    product.Exit();
    ny_sim_clear_calls();
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", gone));
    EXPECT_THAT(AgentCalls(), IsEmpty());
}

TEST_F(Exit, WithAPointerToNoInstanceLeavesTheOneThereIs) {
    const OnPurpose mistakes{"EXIT-OTHER-INSTANCE"};
    environment.InstallAgent();
    const Product product;
    int notABridge = 0;
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", reinterpret_cast<VsMsgbus*>(&notABridge)));
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
}

TEST_F(Exit, TwiceIsOnceWhenAnotherProductIsStillIn) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    environment.InstallAgent();
    const Product staying("PRODUCT1000");
    Product leaving("PRODUCT2000");
    leaving.Exit();
    ny_sim_clear_calls();
    EXPECT_TRUE(VsMsgbusExit("PRODUCT2000", staying.Instance()));
    EXPECT_THAT(AgentCalls(), IsEmpty());
}

TEST_F(Exit, OfTheLastProductCanBeFollowedByANewEntry) {
    environment.InstallAgent();
    const Registration registration("PRODUCT1000", collector);
    Product(std::string("PRODUCT1000")).Exit();
    EXPECT_EQ(LoadedAgentFolder(), "");
    const Product again;
    ASSERT_TRUE(again.IsEntered());
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
}

TEST_F(Exit, EndsTheWatchWhileNoAgentIsInstalled) {
    environment.Installer().CreateAgentKey();
    Product product("PRODUCT1000", &sink);
    product.Exit();
    environment.InstallAgent();
    EXPECT_THAT(AgentCalls(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Exit, DoesNotWaitForThePauseThatAMissingKeyCosts) {
    Product product("PRODUCT1000", &sink);
    ASSERT_TRUE(product.IsEntered());
    const std::vector<std::string> missing = {
        "3: NY log message, [ny_client] failed to open registry Corvane\\Agent\\, error <2>",
        "3: NY log message, [ny_client] failed to open registry Corvane\\Agent\\, error(2), "
        "waiting for registry key to be re-established"};
    ASSERT_TRUE(sink.log.WaitForSize(missing.size()));
    const auto begin = std::chrono::steady_clock::now();
    product.Exit();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_EQ(sink.log.Lines(), missing);
}

TEST_F(Exit, AfterAHundredRoundsLeavesNoHandleOfTheSystem) {
    environment.InstallAgent();
    const Registration registration("PRODUCT1000", collector);
    const auto round = [this] {
        const Product product("PRODUCT1000", &sink);
        EXPECT_TRUE(product.IsEntered());
        EXPECT_EQ(Ask("PRODUCT1000"), answered);
    };
    round();
    const size_t before = HandlesOfThisProcess();
    for (int i = 0; i < 100; ++i) {
        round();
    }
    // An agent thread that has just answered may still be on its way out.
    EXPECT_LE(HandlesOfThisProcess(), before + 5);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
}

}  // namespace
