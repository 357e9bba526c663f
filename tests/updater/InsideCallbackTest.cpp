// Calls of exports from inside each of an update callback's three operations.
#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

#include "support/OnPurpose.h"
#include "updater/UpdateTest.h"

using testing::IsEmpty;

namespace {

constexpr wchar_t wideId[] = L"PRODUCT1000";

class InsideCallback : public UpdateTest {
protected:
    // Has each operation call `act`.
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

TEST_F(InsideCallback, IsOneOperationAtATime) {
    Event isInside;
    Event mayLeave;
    const UpdateRegistration registration(productId, callback);
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

TEST_F(InsideCallback, RemoveReturnsAtOnceAndTheAnswerCounts) {
    const OnPurpose mistakes{"REMOVE-INSIDE", "REMOVE-UNKNOWN"};
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

TEST_F(InsideCallback, ExitAndThenAnExceptionIsAnsweredAsWithoutACallback) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    DoInside([this] {
        product.Exit();
        throw 42;
    });
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(SetCall()), notAvailable);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

}  // namespace
