// The bridge instance's start, step by step, and the notifications that lead to it.
#include <thread>

#include "msgbus/instance/VsMsgbusFixture.h"
#include "support/AgentCalls.h"
#include "support/AgentFunctions.h"
#include "support/AnsweredCalls.h"
#include "support/Checkpoint.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char notified[] = "VsMsgbus received client notification with type :[1]";
constexpr char notStartedText[] = "Failed to start VsMsgbus, exception:[Unknown exception]";

class VsMsgbusStart : public VsMsgbusFixture {};

TEST_F(VsMsgbusStart, StartsTheClientThenCreatesTheServices) {
    Notify(1);
    EXPECT_TRUE(bridge->IsStarted());
    EXPECT_EQ(ny_sim_started_clients(), 1U);
    EXPECT_NE(bridge->FindIo(IoKindProperty), nullptr);
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(notified));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusStart, AttachesEveryProductToTheServicesOfItsMask) {
    for (const char* const product : {"b", "C", "a", "none"}) {
        bridge->AddProduct(product, std::string(product) == "none" ? 0U : 0x2000U);
    }
    Notify(1);
    EXPECT_EQ(ny_sim_call_count("ny_property_register_provider_callback"), 3U);
    EXPECT_EQ(ny_sim_has_property_provider("a"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("b"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("C"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("none"), 0);
}

// The order shows when the agent refuses the second one.
TEST_F(VsMsgbusStart, EndsAtTheProductThatTheAgentRefuses) {
    for (const char* const product : {"b", "C", "a"}) {
        bridge->AddProduct(product, 0x2000U);
    }
    ny_sim_fail_call("ny_property_register_provider_callback", 2, 77, NY_SIM_ONCE);
    Notify(1);
    EXPECT_EQ(ny_sim_has_property_provider("C"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("a"), 0);
    EXPECT_EQ(ny_sim_has_property_provider("b"), 0);
    EXPECT_FALSE(bridge->IsStarted());
    EXPECT_NE(bridge->FindIo(IoKindProperty), nullptr);
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(notified, notStartedText));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusStart, CreatesNoServiceWhenTheClientDoesNotStart) {
    ny_sim_fail_call("ny_client_handler_start", 1, 88, NY_SIM_ONCE);
    Notify(1);
    EXPECT_FALSE(bridge->IsStarted());
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(notified, notStartedText));
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [ny_client] falied to start ny client."));
}

TEST_F(VsMsgbusStart, EndsAtAServiceThatIsThereAlready) {
    Add(IoKindProperty);
    bridge->AddProduct("PRODUCT1000", 0x2000);
    Notify(1);
    EXPECT_FALSE(bridge->IsStarted());
    EXPECT_THAT(ios.Lines(), IsEmpty()) << "the product was attached";
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(notified, notStartedText));
}

TEST_F(VsMsgbusStart, TwiceWithoutAStopFailsAndStaysStarted) {
    Notify(1);
    VsMsgbusIo* const service = bridge->FindIo(IoKindProperty);
    Notify(1);
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(notified, notified, notStartedText));
    EXPECT_EQ(bridge->FindIo(IoKindProperty), service);
    EXPECT_TRUE(bridge->IsStarted());
}

// Agents come with notifications of which this bridge knows nothing.
TEST_F(VsMsgbusStart, DoesNotFollowOtherNotifications) {
    for (const int32_t type : {2, -1, 77}) {
        Notify(type);
    }
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("VsMsgbus received client notification with type :[2]",
                                                 "VsMsgbus received client notification with type :[-1]",
                                                 "VsMsgbus received client notification with type :[77]"));
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

class VsMsgbusAttaching : public VsMsgbusFixture {};

TEST_F(VsMsgbusAttaching, LeavesAnObjectThatIsNotOfTheServicesClass) {
    AddAll();
    bridge->AttachProduct("PRODUCT1000", 0xFFFFFFFF);
    EXPECT_THAT(ios.Lines(), IsEmpty());
}

TEST_F(VsMsgbusAttaching, LeavesWhatIsNotThere) {
    bridge->AttachProduct("PRODUCT1000", 0xFFFFFFFF);
    bridge->AddIo(IoKindProperty, nullptr);
    bridge->AttachProduct("PRODUCT1000", 0xFFFFFFFF);
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
}

TEST_F(VsMsgbusAttaching, KeepsTheFirstMaskOfAProduct) {
    bridge->AddProduct("PRODUCT1000", 0);
    bridge->AddProduct("PRODUCT1000", 0x2000);
    Notify(1);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
}

// A product that has left must not be attached again a moment later.
TEST_F(VsMsgbusAttaching, OfAStartIsWaitedForByAProductThatGoes) {
    bridge->AddProduct("PRODUCT1000", 0x2000);
    Event isRemoved;
    HeldAgentCall attaching(registerProvider);
    std::thread starter([this] { Notify(1); });
    EXPECT_TRUE(attaching.isInside.Wait());
    std::thread leaver([&] {
        bridge->RemoveProduct("PRODUCT1000");
        bridge->WaitForStartOrStop();
        isRemoved.Set();
    });
    EXPECT_FALSE(isRemoved.Wait(std::chrono::milliseconds(50)));
    attaching.mayGoOn.Set();
    leaver.join();
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
    starter.join();
}

// The thread of the Start would wait for itself.
TEST_F(VsMsgbusAttaching, OfAStartIsNotWaitedForOnItsOwnThread) {
    bridge->AddProduct("PRODUCT1000", 0x2000);
    const AgentHook hook(registerProvider, [this] {
        bridge->RemoveProduct("PRODUCT1000");
        bridge->WaitForStartOrStop();
    });
    const auto begin = std::chrono::steady_clock::now();
    Notify(1);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, callWaitLimit);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
}

TEST_F(VsMsgbusAttaching, TellsProductsApartByteByByte) {
    bridge->AddProduct("PRODUCT1000", 0);
    EXPECT_TRUE(bridge->HasProduct("PRODUCT1000"));
    EXPECT_FALSE(bridge->HasProduct("product1000"));
    bridge->RemoveProduct("product1000");
    EXPECT_TRUE(bridge->HasProduct("PRODUCT1000"));
    bridge->RemoveProduct("PRODUCT1000");
    EXPECT_FALSE(bridge->HasProduct("PRODUCT1000"));
}

TEST_F(VsMsgbusStart, DoesNotRegisterAProductThatLeavesMeanwhile) {
    bridge->AddProduct("a", 0x2000U);
    bridge->AddProduct("b", 0x2000U);
    ny_sim_set_hook(
        "ny_property_register_provider_callback",
        [](const char*, void* userData) {
            auto& leaving = *static_cast<VsMsgbus*>(userData);
            leaving.RemoveProduct("b");
            leaving.StopIosForProduct("b");
        },
        bridge.get());
    Notify(1);
    EXPECT_TRUE(bridge->IsStarted());
    EXPECT_EQ(ny_sim_call_count("ny_property_register_provider_callback"), 1U);
    EXPECT_EQ(ny_sim_call_count("ny_property_unregister_provider_callback"), 0U);
    EXPECT_EQ(ny_sim_has_property_provider("a"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("b"), 0);
}

}  // namespace
