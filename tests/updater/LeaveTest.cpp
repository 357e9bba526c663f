// Callbacks that take their time, take themselves back, or have their product leave while they run.
#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "updater/UpdateTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr wchar_t wideId[] = L"PRODUCT1000";

// A callback that is inside an update notify from `isInside` until `mayLeave`.
class BusyCallback : public UpdateTest {
protected:
    BusyCallback() {
        callback.onNotify = [this](uint32_t&) {
            isInside.Set();
            EXPECT_TRUE(mayLeave.Wait());
            order.Add("callback is out");
            return 20;
        };
    }

    Event isInside;
    Event mayLeave;
    LineLog order;
    const UpdateRegistration registration{productId, callback};
};

TEST_F(BusyCallback, IsNotEnteredASecondTime) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    const auto pass = [&] {
        most = std::max(most.load(), ++inside);
        isInside.Set();
        EXPECT_TRUE(mayLeave.Wait());
        --inside;
        return 0;
    };
    callback.onNotify = [&](uint32_t&) { return pass(); };
    callback.onSet = pass;
    callback.onGet = [&](ISet&) { return pass(); };
    std::vector<std::unique_ptr<AgentUpdate>> updates;
    for (const std::string& call : {NotifyCall(), SetCall(), GetCall(), NotifyCall()}) {
        updates.push_back(std::make_unique<AgentUpdate>(call));
    }
    ASSERT_TRUE(isInside.Wait());
    // Long enough for the others to come in, if they could.
    EXPECT_FALSE(updates.back()->IsAnsweredWithin(std::chrono::milliseconds(30)));
    mayLeave.Set();
    for (const auto& update : updates) {
        EXPECT_EQ(update->Answer(), NY_OK);
        EXPECT_EQ(update->Result(), 0);
    }
    EXPECT_EQ(most, 1);
}

TEST_F(BusyCallback, KeepsNoOtherProductWaiting) {
    Product other("PRODUCT2000", nullptr, VsMsgbusServiceUpdate);
    UpdateCallback others;
    const AgentUpdate busy(NotifyCall());
    ASSERT_TRUE(isInside.Wait());
    UpdateRegistration ofOther("PRODUCT2000", others);
    EXPECT_EQ(Update(NotifyCall("PRODUCT2000")), notified);
    EXPECT_EQ(Update(SetCall("PRODUCT2000")), wasSet);
    EXPECT_EQ(Update(GetCall("PRODUCT2000")), got);
    ofOther.Remove();
    other.Exit();
    EXPECT_FALSE(busy.IsAnsweredWithin(std::chrono::milliseconds(0)));
    mayLeave.Set();
    EXPECT_EQ(busy.Outcome(), notified);
}

TEST_F(BusyCallback, IsWaitedForByRemoveOnAnotherThread) {
    const AgentUpdate busy(NotifyCall());
    ASSERT_TRUE(isInside.Wait());
    Event isRemoved;
    std::thread remover([&] {
        EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(wideId));
        order.Add("removed");
        isRemoved.Set();
    });
    EXPECT_FALSE(isRemoved.Wait(std::chrono::milliseconds(50)));
    mayLeave.Set();
    remover.join();
    EXPECT_EQ(busy.Outcome(), notified);
    EXPECT_THAT(order.Lines(), ElementsAre("callback is out", "removed"));
}

// The agent lets go of a product when no callback of it runs any more.
TEST_F(BusyCallback, IsWaitedForByExitOnAnotherThread) {
    const AgentUpdate busy(NotifyCall());
    ASSERT_TRUE(isInside.Wait());
    Event isUnregistering;
    const AgentHook hook(unregisterUpdater, [&] { isUnregistering.Set(); });
    std::thread leaver([&] {
        product.Exit();
        order.Add("left");
    });
    EXPECT_TRUE(isUnregistering.Wait());
    mayLeave.Set();
    leaver.join();
    EXPECT_EQ(busy.Outcome(), notified);
    EXPECT_THAT(order.Lines(), ElementsAre("callback is out", "left"));
}

TEST_F(BusyCallback, IsWaitedForWhenTheAgentIsUpgraded) {
    const AgentUpdate busy(NotifyCall());
    ASSERT_TRUE(isInside.Wait());
    Event isUnregistering;
    const AgentHook unregistering(unregisterUpdater, [&] { isUnregistering.Set(); });
    const AgentHook releasing("ny_client_handler_release", [&] { order.Add("client is released"); });
    ny_sim_clear_calls();
    environment.UpgradeAgent("5.7.1");
    ASSERT_TRUE(SeenByWatcher([&](auto limit) { return isUnregistering.Wait(limit); }));
    mayLeave.Set();
    EXPECT_EQ(busy.Outcome(), notified);
    ASSERT_TRUE(WaitForAgentCalls(registerUpdater));
    EXPECT_EQ(Update(SetCall()), wasSet);
    EXPECT_THAT(order.Take(), ElementsAre("callback is out", "client is released"));
}

class InsideCallback : public UpdateTest {
protected:
    // Each operation does so.
    void DoInside(std::function<void()> act) {
        callback.onNotify = [act](uint32_t&) {
            act();
            return 20;
        };
        callback.onSet = [act] {
            act();
            return 40;
        };
        callback.onGet = [act](ISet& set) {
            act();
            EXPECT_TRUE(set.Set(L"value"));
            return 30;
        };
    }
};

TEST_F(InsideCallback, RemoveReturnsAtOnceAndTheAnswerCounts) {
    DoInside([] { EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(wideId)); });
    for (const auto& [call, outcome] :
         {std::pair{NotifyCall(), std::string(notified)}, std::pair{SetCall(), std::string(wasSet)},
          std::pair{GetCall(), std::string("answer 0, result 30, value <value>")}}) {
        const UpdateRegistration registration(productId, callback);
        EXPECT_EQ(Update(call), outcome);
        EXPECT_EQ(Update(NotifyCall()), notNotified);
    }
    EXPECT_EQ(callback.log.Lines().size(), 3U);
}

TEST_F(InsideCallback, RemoveMakesRoomForAnother) {
    UpdateCallback next;
    DoInside([&] {
        EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(wideId));
        EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(wideId, &next, nullptr));
    });
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(NotifyCall()), notified);
    EXPECT_EQ(Update(GetCall()), got);
    EXPECT_THAT(next.log.Lines(), ElementsAre("GetProductInfo(text 2, a key)"));
}

TEST_F(InsideCallback, ExitOfTheLastProductEndsTheBridgeUnderTheCallback) {
    DoInside([this] {
        product.Exit();
        EXPECT_NE(::GetModuleHandleA("ny_client.dll"), nullptr) << "the agent's thread returns into it";
    });
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(NotifyCall()), notified);
    EXPECT_EQ(Update(NotifyCall()), notCalled);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(InsideCallback, ExitOfTheLastProductLeavesNobodyToMakeTheValue) {
    DoInside([this] { product.Exit(); });
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(GetCall()), notAvailable);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(InsideCallback, ExitOfOneOfTwoProductsLeavesTheAnswer) {
    const Product staying("PRODUCT2000", nullptr, VsMsgbusServiceUpdate);
    DoInside([this] { product.Exit(); });
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(GetCall()), "answer 0, result 30, value <value>");
    EXPECT_EQ(Update(GetCall()), notCalled);
}

TEST_F(InsideCallback, ExitAndThenAnExceptionIsAnsweredAsWithoutACallback) {
    DoInside([this] {
        product.Exit();
        throw 42;
    });
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(SetCall()), notAvailable);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

// The second call is at the bridge's door when the first one's callback leaves, and the agent waits for it to go away:
// it must not wait for the callback that waits in Exit.
TEST_F(InsideCallback, ExitTurnsAwayACallThatWaitsForItsTurn) {
    ny_sim_clear_calls();
    std::atomic<bool> isFirst = true;
    DoInside([&] {
        if (isFirst.exchange(false)) {
            // The look-up of the product, twice, and the texts of the first call.
            EXPECT_TRUE(WaitForAgentCalls("ny_variant_release", 5));
            product.Exit();
        }
    });
    const UpdateRegistration registration(productId, callback);
    const AgentUpdate first(NotifyCall());
    const AgentUpdate second(NotifyCall());
    EXPECT_EQ(first.Answer(), NY_OK);
    EXPECT_EQ(second.Answer(), NY_OK);
}

}  // namespace
