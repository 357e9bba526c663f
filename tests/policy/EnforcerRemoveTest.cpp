// Taking an enforcer back while it enforces.
#include <memory>
#include <thread>

#include "policy/PolicyTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class RemoveEnforcer : public PolicyTest {
protected:
    // An enforcer that is inside from `isInside` until `mayLeave`.
    void Block() {
        enforcer.enforce = [this](IPolicyBag& bag) {
            isInside.Set();
            EXPECT_TRUE(mayLeave.Wait());
            EXPECT_EQ(Dump(bag), "");
            order.Add("enforcer is out");
        };
    }

    // Returns when the enforcer is out of the table: the agent then hears that nobody enforces.
    void WaitUntilRemovedFromTable() {
        std::vector<std::unique_ptr<PolicyNotice>> notices;
        do {
            notices.push_back(std::make_unique<PolicyNotice>(productId));
        } while (!notices.back()->IsAnsweredWithin(std::chrono::milliseconds(100)));
        // Those that came too early wait for their turn at the enforcer that is being removed.
        mayLeave.Set();
    }

    Event isInside;
    Event mayLeave;
    LineLog order;
};

TEST_F(RemoveEnforcer, InsideItReturnsAtOnceAndIsTheLastOfIt) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "N"}])");
    enforcer.enforce = [](IPolicyBag& bag) {
        EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId));
        NotingCallbacks callbacks;
        EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks)) << "the bag still works";
        EXPECT_THAT(callbacks.lines, ElementsAre("container (null)|(null)|(null)|N"));
    };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(sink.log.Take(), IsEmpty());
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(sink.log.Take(), ElementsAre(notCompletedLine));
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
}

TEST_F(RemoveEnforcer, InsideGetLogLevelIsTheLastOfIt) {
    enforcer.getLogLevel = [] {
        EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId));
        return 4;
    };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel"));
}

TEST_F(RemoveEnforcer, InsideACallbackOfAWalkReturnsAtOnce) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": {"x": "1"}}]}])");
    const Lines lines = Walk([](const std::string&) { return VsKitMsgbusRemoveEnforcerPolicy(wideId); });
    EXPECT_EQ(lines.size(), 4U);
}

TEST_F(RemoveEnforcer, InsideItMakesRoomForAnother) {
    Enforcer next;
    enforcer.enforce = [&](IPolicyBag&) {
        EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId));
        EXPECT_TRUE(VsKitMsgbusSetEnforcePolicy(wideId, &next, nullptr));
    };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(next.log.Lines(), IsEmpty());
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(next.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
}

TEST_F(RemoveEnforcer, InsideItAndThenAnExceptionIsAFailureLikeAnyOther) {
    enforcer.enforce = [](IPolicyBag&) {
        EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId));
        throw 42;
    };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), 3);
}

TEST_F(RemoveEnforcer, OfASecondOneInsideTheFirstChangesNothing) {
    Enforcer second;
    enforcer.enforce = [&](IPolicyBag&) { EXPECT_TRUE(VsKitMsgbusSetEnforcePolicy(wideId, &second, nullptr)); };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(second.log.Lines(), IsEmpty());
}

TEST_F(RemoveEnforcer, OnAnotherThreadReturnsWhenItIsOut) {
    Block();
    EnforcerRegistration registration(productId, enforcer);
    const PolicyNotice notice(productId);
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
    EXPECT_EQ(notice.Answer(), NY_OK);
    EXPECT_THAT(order.Lines(), ElementsAre("enforcer is out", "removed"));
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
}

TEST_F(RemoveEnforcer, LetsNoNotificationInThatWaitedForItsTurn) {
    Block();
    EnforcerRegistration registration(productId, enforcer);
    const PolicyNotice first(productId);
    ASSERT_TRUE(isInside.Wait());
    const PolicyNotice second(productId);
    Lines linesAtReturn;
    std::thread remover([&] {
        registration.Remove();
        linesAtReturn = enforcer.log.Lines();
    });
    WaitUntilRemovedFromTable();
    remover.join();
    EXPECT_EQ(second.Answer(), NY_OK);
    EXPECT_EQ(enforcer.log.Lines(), linesAtReturn);
}

}  // namespace
