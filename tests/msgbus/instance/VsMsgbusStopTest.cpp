// How the bridge instance lets go of its service objects, and what of it reaches the log sink.
#include "msgbus/instance/VsMsgbusFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char released[] = "Successfully released/unregistered VsMsgbus io ";

class VsMsgbusStop : public VsMsgbusFixture {
protected:
    void SetUp() override {
        VsMsgbusFixture::SetUp();
        ASSERT_EQ(NyClientStart(Client()), NY_OK);
        bridge->AddProduct("PRODUCT1000", 0);
    }
    void Stop() { Notify(0); }
};

TEST_F(VsMsgbusStop, UnregistersAndDestroysEveryServiceInAscendingOrder) {
    AddAll();
    Stop();
    EXPECT_THAT(ios.Lines(), ElementsAre("256 unregisters PRODUCT1000", "256 unregisters all", "256 destroyed",
                                         "2048 unregisters PRODUCT1000", "2048 unregisters all", "2048 destroyed",
                                         "4096 unregisters PRODUCT1000", "4096 unregisters all", "4096 destroyed",
                                         "8192 unregisters PRODUCT1000", "8192 unregisters all", "8192 destroyed"));
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_EQ(ny_sim_started_clients(), 0U);
}

TEST_F(VsMsgbusStop, OfAnEmptyContainerSaysNothing) {
    Stop();
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("VsMsgbus received client notification with type :[0]"));
}

TEST_F(VsMsgbusStop, LeavesNothingForTheSecondProduct) {
    bridge->AddProduct("PRODUCT2000", 0);
    Add(IoKindUpdate);
    Stop();
    EXPECT_THAT(ios.Lines(), ElementsAre("256 unregisters PRODUCT1000", "256 unregisters all", "256 destroyed"));
}

TEST_F(VsMsgbusStop, ReleasesTheServicesWhenTheLastProductHasLeft) {
    bridge->RemoveProduct("PRODUCT1000");
    Add(IoKindUpdate);
    Stop();
    EXPECT_THAT(ios.Lines(), ElementsAre("256 unregisters all", "256 destroyed"));
}

TEST_F(VsMsgbusStop, SkipsAnEntryWithoutAnObject) {
    bridge->AddIo(IoKindTask, nullptr);
    Stop();
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusStop, TellsTheSinkOfARefusalAndGoesOnWithTheNext) {
    AddAll();
    Io(IoKindTask).onUnregister = Throwing(77);
    Stop();
    EXPECT_THAT(sink.log.Lines(), ElementsAre(std::string("3: ") + released +
                                              "[256]Failed to release VsMsgbus io [2048] due to exception: [77]"));
    EXPECT_THAT(ios.Lines(),
                ElementsAre("256 unregisters PRODUCT1000", "256 unregisters all", "256 destroyed",
                            "2048 unregisters PRODUCT1000", "2048 unregisters all", "4096 unregisters PRODUCT1000",
                            "4096 unregisters all", "4096 destroyed", "8192 unregisters PRODUCT1000",
                            "8192 unregisters all", "8192 destroyed", "2048 destroyed"));
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
    EXPECT_EQ(ny_sim_started_clients(), 0U);
}

// There is no product left that the text could be about.
TEST_F(VsMsgbusStop, IsSilentOfARefusalWhenTheLastProductHasLeft) {
    bridge->RemoveProduct("PRODUCT1000");
    Add(IoKindTask).onUnregisterAll = Throwing(77);
    Stop();
    EXPECT_THAT(ios.Lines(), ElementsAre("2048 unregisters all", "2048 destroyed"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusStop, TellsTheSinkOfEachRefusalWithWhatWasBeforeIt) {
    AddAll();
    Io(IoKindUpdate).onUnregister = Throwing(-5);
    Io(IoKindPolicy).onUnregister = Throwing(77);
    Stop();
    const std::string first = "3: Failed to release VsMsgbus io [256] due to exception: [-5]";
    EXPECT_THAT(sink.log.Lines(),
                ElementsAre(first, first + released + "[2048]" +
                                       "Failed to release VsMsgbus io [4096] due to exception: [77]"));
}

TEST_F(VsMsgbusStop, TellsTheSinkOfAnyOtherExceptionToo) {
    AddAll();
    Io(IoKindUpdate).onUnregister = [] { throw 1; };
    Io(IoKindTask).onUnregister = [] { throw std::bad_alloc(); };
    Stop();
    const std::string unknown = "Failed to release VsMsgbus io due to unknown exception";
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: " + unknown, "3: " + unknown + unknown));
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
}

TEST_F(VsMsgbusStop, WithoutASinkGoesOnAllTheSame) {
    ClearLogSink();
    AddAll();
    Io(IoKindUpdate).onUnregister = Throwing(77);
    Stop();
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusStop, TellsTheSinkThatTheClientDidNotStop) {
    ny_sim_fail_call("ny_client_handler_stop", 1, 55, NY_SIM_ONCE);
    Stop();
    EXPECT_THAT(sink.log.Lines(),
                ElementsAre("3: Successfully release all VsMsgbus iosFailed to stop VsMsgbus, exception:[Unknown "
                            "exception]"));
}

// Through the state handler, which lets go of the agent between the two.
TEST_F(VsMsgbusStop, IsFollowedByAStartThatAddsTheServicesAgain) {
    bridge->RegisterForNotifications();
    ASSERT_TRUE(bridge->IsStarted());
    const auto kinds = bridge->CopyIos().size();
    ASSERT_GT(kinds, 0U);
    NyClientNotifyState(Client(), 0, Client()->notificationUserData);
    EXPECT_FALSE(bridge->IsStarted());
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
    NyClientNotifyState(Client(), 1, Client()->notificationUserData);
    EXPECT_TRUE(bridge->IsStarted());
    EXPECT_THAT(bridge->CopyIos(), SizeIs(kinds));
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("VsMsgbus received client notification with type :[1]",
                                                 "VsMsgbus received client notification with type :[0]",
                                                 "VsMsgbus received client notification with type :[1]"));
}

TEST_F(VsMsgbusStop, ThatFailedLeavesTheBridgeMarkedAsStarted) {
    Notify(1);
    ASSERT_TRUE(bridge->IsStarted());
    ny_sim_fail_call("ny_client_handler_stop", 1, 55, NY_SIM_ONCE);
    Stop();
    EXPECT_TRUE(bridge->IsStarted());
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
}

class VsMsgbusLeaving : public VsMsgbusFixture {};

TEST_F(VsMsgbusLeaving, UnregistersTheProductFromEveryServiceInAscendingOrder) {
    AddAll();
    bridge->StopIosForProduct("PRODUCT1000");
    EXPECT_THAT(ios.Lines(), ElementsAre("256 unregisters PRODUCT1000", "2048 unregisters PRODUCT1000",
                                         "4096 unregisters PRODUCT1000", "8192 unregisters PRODUCT1000"));
    EXPECT_THAT(bridge->CopyIos(), SizeIs(4));
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusLeaving, GoesOnAfterARefusalWhoseTextIsDropped) {
    AddAll();
    bridge->AddIo(0, nullptr);
    Io(IoKindTask).onUnregister = Throwing(77);
    Io(IoKindProperty).onUnregister = Throwing(-1);
    bridge->StopIosForProduct("PRODUCT1000");
    EXPECT_THAT(ios.Lines(), SizeIs(4));
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("Failed to stop VsMsgbus io [2048] due to exception: [77]",
                                                 "Failed to stop VsMsgbus io [8192] due to exception: [-1]"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusLeaving, LetsAnyOtherExceptionOut) {
    AddAll();
    Io(IoKindTask).onUnregister = [] { throw 1; };
    EXPECT_THROW(bridge->StopIosForProduct("PRODUCT1000"), int);
    EXPECT_THAT(ios.Lines(), SizeIs(2));
}

}  // namespace
