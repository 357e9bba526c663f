// A product of the C++ layer, from its making to its end.
#include <atomic>
#include <memory>
#include <optional>
#include <thread>

#include "cpp/LayerTest.h"
#include "support/Checkpoint.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LayerProduct : public LayerTest {
protected:
    // A handler for one property.
    static vsmsgbus::PropertiesHandler OneProperty() {
        return [](vsmsgbus::Properties& properties) { properties.Set("general", "version", "1.0"); };
    }

    // The text of the error with which a product cannot be made.
    static std::string RefusalOf(std::string_view productId, vsmsgbus::Handlers handlers) {
        try {
            const vsmsgbus::Product product(productId, std::move(handlers));
            return "made";
        } catch (const vsmsgbus::Error& error) {
            return error.what();
        }
    }
};

TEST_F(LayerProduct, IsInTheBridgeFromItsMakingToItsEnd) {
    {
        const vsmsgbus::Product product(id, {.properties = OneProperty()});
        EXPECT_EQ(product.Id(), id);
        EXPECT_FALSE(product.IsRefused());
        EXPECT_EQ(Ask(id), answered);
    }
    EXPECT_EQ(Ask(id), notAsked);
}

TEST_F(LayerProduct, LeavesWhenItIsToldToAndAgainDoesNothing) {
    vsmsgbus::Product product(id, {.properties = OneProperty()});
    EXPECT_TRUE(product.Leave());
    EXPECT_EQ(Ask(id), notAsked);
    EXPECT_TRUE(product.Leave());
    EXPECT_FALSE(product.EnforcePolicies());
}

TEST_F(LayerProduct, CanComeAgain) {
    for (int i = 0; i < 3; ++i) {
        const vsmsgbus::Product product(id, {.properties = OneProperty()});
        EXPECT_EQ(Ask(id), answered);
    }
}

TEST_F(LayerProduct, EntersForWhatItHasHandlersFor) {
    using vsmsgbus::Product;
    EXPECT_EQ(Product(id, {.properties = OneProperty()}).Mask(), VsMsgbusServiceProperty);
    EXPECT_EQ(Product(id, {.policies = [](vsmsgbus::Policies&) {}}).Mask(), VsMsgbusServicePolicy);
    EXPECT_EQ(Product(id, {.tasks = [](vsmsgbus::Task&) { return vsmsgbus::TaskResult::Done; }}).Mask(),
              VsMsgbusServiceTask);
    EXPECT_EQ(Product(id, {.updates = {.set = [](auto, auto) { return true; }}}).Mask(), VsMsgbusServiceUpdate);
}

TEST_F(LayerProduct, IsRefusedWithoutAnIdOrAService) {
    const std::string remedy = "The product id must be a text that is not empty.";
    EXPECT_EQ(RefusalOf("", {.properties = OneProperty()}), "entering the bridge as  failed: " + remedy);
    EXPECT_EQ(RefusalOf(id, {}),
              "entering the bridge as PRODUCT1000 failed: Set a handler for properties, policies, tasks or updates.");
    EXPECT_EQ(ny_sim_started_clients(), 0U);
}

TEST_F(LayerProduct, IsRefusedWhileAnotherOfItsIdIsIn) {
    const std::string refusal =
        "entering the bridge as PRODUCT1000 failed: This module has a product of that id in the bridge: have it leave "
        "first, or give it the handlers of both.";
    std::optional<vsmsgbus::Product> first;
    first.emplace(id, vsmsgbus::Handlers{.properties = OneProperty()});
    EXPECT_EQ(RefusalOf(id, {.properties = OneProperty()}), refusal);
    EXPECT_EQ(RefusalOf(id, {.policies = [](vsmsgbus::Policies&) {}}), refusal) << "another service";
    EXPECT_EQ(Ask(id), answered) << "the first one is in as before";
    EXPECT_EQ(RefusalOf("PRODUCT2000", {.properties = OneProperty()}), "made");
    vsmsgbus::Product moved = std::move(*first);
    first.reset();
    EXPECT_EQ(RefusalOf(id, {.properties = OneProperty()}), refusal) << "moved";
    EXPECT_TRUE(moved.Leave());
    const vsmsgbus::Product second(id, {.properties = OneProperty()});
    EXPECT_EQ(Ask(id), answered);
}

TEST_F(LayerProduct, CanComeAgainWhileAHandlerOfTheOneThatLeftRuns) {
    const OnPurpose mistakes{"REMOVE-INSIDE"};
    Event hasLeft;
    Event mayEnd;
    std::optional<vsmsgbus::Product> first;
    first.emplace(id, vsmsgbus::Handlers{.properties = [&](vsmsgbus::Properties& /*properties*/) {
                      EXPECT_FALSE(first->Leave());
                      hasLeft.Set();
                      EXPECT_TRUE(mayEnd.Wait());
                  }});
    const AgentRequest request(id);
    ASSERT_TRUE(hasLeft.Wait());
    const vsmsgbus::Product second(id, {.properties = OneProperty()});
    EXPECT_EQ(Ask(id), answered);
    mayEnd.Set();
    EXPECT_EQ(request.Answer(), NY_OK);
}

TEST_F(LayerProduct, ThatCannotEnterLeavesNothingBehind) {
    ny_sim_fail_call("ny_client_handler_create", 1, 77, NY_SIM_FROM_THEN_ON);
    const std::string refusal = RefusalOf(id, {.properties = OneProperty()});
    ny_sim_clear_faults();
    if (refusal != "made") {
        EXPECT_EQ(refusal,
                  "entering the bridge as PRODUCT1000 failed: Memory ran out, or the agent's client could not "
                  "be created.");
    }
    // The collector was taken back: the next one is asked.
    const vsmsgbus::Product product(id, {.properties = OneProperty()});
    EXPECT_EQ(Ask(id), answered);
}

TEST_F(LayerProduct, SaysThatTheAgentRefusedAServiceAndIsInAllTheSame) {
    const OnPurpose mistakes{"ENTRY-FAILED"};
    ny_sim_fail_call("ny_property_register_provider_callback", 1, 77, NY_SIM_FROM_THEN_ON);
    const vsmsgbus::Product product(id, {.properties = OneProperty()});
    EXPECT_TRUE(product.IsRefused());
    EXPECT_EQ(Ask(id), notAsked);
    ny_sim_clear_faults();
    UpgradeAndWait("5.8.0");
    EXPECT_EQ(Ask(id), answered);
}

TEST_F(LayerProduct, WaitsForAnAgentThatIsNotThere) {
    environment.RemoveAgent();
    const vsmsgbus::Product product(id, Logged({.properties = OneProperty()}));
    EXPECT_FALSE(product.IsRefused());
    EXPECT_EQ(Ask(id), notAsked);
}

TEST_F(LayerProduct, CanBeMovedWhileAHandlerRuns) {
    Checkpoint held;
    std::optional<vsmsgbus::Product> first;
    first.emplace(id, vsmsgbus::Handlers{.properties = [&](vsmsgbus::Properties& properties) {
                      held.Stop();
                      properties.Set("general", "version", "1.0");
                  }});
    const AgentRequest request(id);
    ASSERT_TRUE(held.isInside.Wait());
    vsmsgbus::Product second = std::move(*first);
    first.reset();
    held.mayGoOn.Set();
    EXPECT_EQ(request.Answer(), NY_OK);
    EXPECT_THAT(request.Properties(), ElementsAre("general:version=1.0"));
    EXPECT_TRUE(second.Leave());
}

TEST_F(LayerProduct, LeavesWhenAnotherTakesItsPlace) {
    vsmsgbus::Product product(id, {.properties = OneProperty()});
    product = vsmsgbus::Product("PRODUCT2000", {.properties = OneProperty()});
    EXPECT_EQ(product.Id(), "PRODUCT2000");
    EXPECT_EQ(Ask(id), notAsked);
    EXPECT_EQ(Ask("PRODUCT2000"), answered);
}

TEST_F(LayerProduct, ThatEndsInsideItsOwnHandlerKeepsWhatTheHandlerUses) {
    const OnPurpose mistakes{"REMOVE-INSIDE"};
    const auto used = std::make_shared<std::string>("1.0");
    const std::weak_ptr<std::string> watched = used;
    bool isAllOut = true;
    std::optional<vsmsgbus::Product> product;
    auto handler = [&, kept = std::shared_ptr<std::string>(used)](vsmsgbus::Properties& /*properties*/) {
        isAllOut = product->Leave();
        product.reset();
        EXPECT_EQ(*kept, "1.0");
    };
    product.emplace(id, vsmsgbus::Handlers{.properties = std::move(handler)});
    EXPECT_EQ(AgentRequest(id).Answer(), NY_OK);
    EXPECT_FALSE(isAllOut);
    EXPECT_TRUE(AgentIsLetGo());
    EXPECT_EQ(watched.use_count(), 1) << "kept after the handler has returned";
    EXPECT_EQ(Ask(id), notAsked);
}

TEST_F(LayerProduct, WaitsForAHandlerThatRunsOnAnotherThread) {
    Event isInside;
    Event isLeaving;
    std::atomic<bool> hasEnded = false;
    std::optional<vsmsgbus::Product> product;
    product.emplace(id, vsmsgbus::Handlers{.properties = [&](vsmsgbus::Properties& /*properties*/) {
                        isInside.Set();
                        EXPECT_TRUE(isLeaving.Wait());
                        hasEnded = true;
                    }});
    const AgentRequest request(id);
    ASSERT_TRUE(isInside.Wait());
    const AgentHook hook("ny_property_unregister_provider_callback", [&] { isLeaving.Set(); });
    EXPECT_TRUE(product->Leave());
    EXPECT_TRUE(hasEnded);
}

TEST_F(LayerProduct, LogsToItsHandlerWhateverThatThrows) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    vsmsgbus::Handlers handlers{.properties = [](vsmsgbus::Properties&) { throw 1; },
                                .log = [](int, std::wstring_view) { throw 2; }};
    const vsmsgbus::Product product(id, std::move(handlers));
    EXPECT_EQ(AgentRequest(id).Answer(), 3);
}

void CheckHealth() {}

TEST_F(LayerProduct, RegistersItsHealthCheck) {
    const vsmsgbus::Product product(id, {.properties = OneProperty(), .healthCheck = CheckHealth});
    EXPECT_EQ(Ask(id), answered);
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

}  // namespace
