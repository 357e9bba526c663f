// Taking a collector back while it is being asked.
#include <memory>
#include <thread>

#include "property/PropertyTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr wchar_t wideId[] = L"PRODUCT1000";

class Remove : public PropertyTest {
protected:
    // A collector that is inside from `isInside` until `mayLeave`.
    void Block() {
        collector.collect = [this](ISet& set) {
            isInside.Set();
            EXPECT_TRUE(mayLeave.Wait());
            EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
            order.Add("collector is out");
        };
    }

    // Returns when the collector is out of the table: another one can then be registered, and answers.
    void WaitUntilRemovedFromTable() {
        Collector probe;
        std::vector<std::unique_ptr<AgentRequest>> requests;
        do {
            EXPECT_TRUE(VsKitMsgbusSetCollectProperties(wideId, &probe, nullptr));
            requests.push_back(std::make_unique<AgentRequest>(productId));
        } while (!requests.back()->IsAnsweredWithin(std::chrono::milliseconds(100)));
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(wideId));
        // Those that came too early wait for their turn at the collector that is being removed.
        mayLeave.Set();
    }

    Event isInside;
    Event mayLeave;
    LineLog order;
};

TEST_F(Remove, InsideTheCollectorReturnsAtOnceAndIsTheLastOfIt) {
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(wideId));
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)"));
}

TEST_F(Remove, InsideGetLogLevelReturnsAtOnce) {
    collector.getLogLevel = [] {
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(wideId));
        return 4;
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask(productId), nothing);
}

TEST_F(Remove, InsideTheCollectorMakesRoomForAnother) {
    Collector next([](ISet& set) { EXPECT_TRUE(set.SetProperty(L"next", L"own", L"2")); });
    collector.collect = [&](ISet& set) {
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(wideId));
        EXPECT_TRUE(VsKitMsgbusSetCollectProperties(wideId, &next, nullptr));
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 0", "next:own=2"));
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)"));
}

TEST_F(Remove, InsideTheCollectorAndThenAnExceptionIsAFailureLikeAnyOther) {
    collector.collect = [](ISet&) {
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(wideId));
        throw 42;
    };
    const Registration registration(productId, collector);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 3"));
    EXPECT_EQ(Ask(productId), nothing);
}

TEST_F(Remove, OfAnIdleCollectorInsideAnotherReturns) {
    Collector idle;
    const Registration ofIdle("PRODUCT2000", idle);
    collector.collect = [](ISet&) { EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"PRODUCT2000")); };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), nothing);
}

TEST_F(Remove, OnAnotherThreadReturnsWhenTheCollectorIsOut) {
    Block();
    Registration registration(productId, collector);
    const AgentRequest request(productId);
    ASSERT_TRUE(isInside.Wait());
    Event isRemoved;
    std::thread remover([&] {
        registration.Remove();
        order.Add("removed");
        isRemoved.Set();
    });
    EXPECT_FALSE(isRemoved.Wait(std::chrono::milliseconds(50)));
    WaitUntilRemovedFromTable();
    remover.join();
    EXPECT_THAT(request.Properties(), ElementsAre("general:version=1.0"));
    EXPECT_THAT(order.Lines(), ElementsAre("collector is out", "removed"));
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)"));
}

TEST_F(Remove, LetsNoRequestInThatWaitedForItsTurn) {
    Block();
    Registration registration(productId, collector);
    const AgentRequest first(productId);
    ASSERT_TRUE(isInside.Wait());
    const AgentRequest second(productId);
    std::vector<std::string> linesAtReturn;
    std::thread remover([&] {
        registration.Remove();
        linesAtReturn = collector.log.Lines();
    });
    WaitUntilRemovedFromTable();
    remover.join();
    EXPECT_EQ(second.Answer(), NY_OK);
    EXPECT_EQ(collector.log.Lines(), linesAtReturn);
}

TEST_F(Remove, TwiceOnTwoThreadsIsWaitedForByTheOneThatTookIt) {
    Block();
    const Registration registration(productId, collector);
    const AgentRequest request(productId);
    ASSERT_TRUE(isInside.Wait());
    std::thread first([] { EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(wideId)); });
    WaitUntilRemovedFromTable();
    first.join();
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(wideId));
    EXPECT_THAT(order.Lines(), ElementsAre("collector is out"));
}

}  // namespace
