// The texts of Entry and Exit, which are composed and dropped; the "%s" in them is kept on purpose.
#include "VsMsgbus/Entry.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/client/NyClientNotifier.h"
#include "msgbus/client/SystemCalls.h"
#include "msgbus/client/ThreadCopy.h"
#include "msgbus/client/WatchCount.h"
#include "msgbus/instance/VsMsgbusFixture.h"
#include "support/Checkpoint.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char started[] = "VsMsgbus received client notification with type :[1]";
constexpr char stopped[] = "VsMsgbus received client notification with type :[0]";

class EntryText : public AgentTest {
protected:
    void SetUp() override { environment.InstallAgent(); }

    bool Enter(const char* productId) { return VsMsgbusEntry(productId, 0x2000, &sink, &instance); }

    LineLog ios;
    CapturingSink sink;
    UnloggedTexts dropped;
    VsMsgbus* instance = nullptr;
};

TEST_F(EntryText, OfALifeWithoutFailures) {
    ASSERT_TRUE(Enter("PRODUCT1000"));
    ASSERT_TRUE(Enter("PRODUCT2000"));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT2000", instance));
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(started, stopped));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

// Its code could go while a thread is in it.
TEST_F(EntryText, OfAnEntryThatCannotKeepTheLibraryInMemory) {
    {
        const NoLibraryReferences failing;
        EXPECT_FALSE(Enter("PRODUCT1000"));
    }
    EXPECT_EQ(instance, nullptr);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    EXPECT_EQ(CurrentLogSink(), nullptr);
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

TEST_F(EntryText, OfAnEntryThatTheAgentRefuses) {
    ASSERT_TRUE(Enter("PRODUCT1000"));
    ny_sim_fail_call("ny_property_register_provider_callback", 1, 77, NY_SIM_ONCE);
    EXPECT_FALSE(Enter("PRODUCT2000"));
    EXPECT_THAT(dropped.log.Take(), ElementsAre(started, "Failed to entry msgbus for product id: %s [PRODUCT2000]"));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT2000", instance));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(stopped)) << "the first Exit was the last one";
}

TEST_F(EntryText, OfAnExitThatTheAgentRefuses) {
    ASSERT_TRUE(Enter("PRODUCT1000"));
    ASSERT_TRUE(Enter("PRODUCT2000"));
    ny_sim_fail_call("ny_property_unregister_provider_callback", 1, 77, NY_SIM_ONCE);
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
    EXPECT_THAT(dropped.log.Take(), ElementsAre(started, "Failed to stop VsMsgbus io [8192] due to exception: [77]"));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT2000", instance));
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(stopped));
}

TEST_F(EntryText, OfAnExitThatFailsForAnotherReason) {
    ASSERT_TRUE(Enter("PRODUCT1000"));
    auto io = std::make_shared<FakeIo>(ios, "io");
    io->onUnregister = [] { throw std::bad_alloc(); };
    constexpr int32_t kindOfNoService = 1;
    instance->AddIo(kindOfNoService, std::move(io));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
    EXPECT_THAT(dropped.log.Lines(),
                ElementsAre(started, "Failed to exit msgbus for product id: %s [PRODUCT1000]", stopped));
    EXPECT_EQ(CurrentBridge(), nullptr);
    EXPECT_THAT(ios.Lines(), ElementsAre("io unregisters PRODUCT1000", "io unregisters all", "io destroyed"));
}

// Whichever allocation fails, Entry says no and leaves nothing, or what it says yes to can be left again.
TEST_F(EntryText, IsFollowedByNothingWhenMemoryRunsOut) {
    SetUnloggedTextListener(nullptr);
    bool isEntered = false;
    size_t failures = 0;
    for (; !isEntered; ++failures) {
        ASSERT_LT(failures, 500U);
        instance = nullptr;
        {
            const FailingMemory memory(failures);
            isEntered = Enter("a product id that is too long to be kept without memory");
        }
        if (CurrentBridge() != nullptr) {
            EXPECT_EQ(CurrentBridge(), instance);
            VsMsgbusExit("a product id that is too long to be kept without memory", instance);
        } else {
            EXPECT_FALSE(isEntered);
            EXPECT_EQ(CurrentLogSink(), nullptr);
        }
        ASSERT_EQ(CurrentBridge(), nullptr);
        ASSERT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
    }
    EXPECT_GT(failures, 5U);
}

// The product that is there already, and the sink that it brought, stay.
TEST_F(EntryText, OfASecondEntryWithoutMemoryLeavesTheFirst) {
    SetUnloggedTextListener(nullptr);
    ASSERT_TRUE(Enter("PRODUCT1000"));
    const std::string second = "a product id that is too long to be kept without memory";
    VsMsgbus* ofSecond = nullptr;
    {
        const FailingMemory memory;
        EXPECT_FALSE(VsMsgbusEntry(second.c_str(), 0x2000, nullptr, &ofSecond));
    }
    EXPECT_EQ(CurrentBridge(), instance);
    EXPECT_EQ(CurrentLogSink(), &sink);
    EXPECT_FALSE(instance->HasProduct(second));
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
    EXPECT_EQ(CurrentBridge(), nullptr);
}

TEST_F(EntryText, WithoutMemoryAndWithoutASinkLeavesNothing) {
    SetUnloggedTextListener(nullptr);
    {
        const FailingMemory memory;
        EXPECT_FALSE(VsMsgbusEntry("PRODUCT1000", 0x2000, nullptr, &instance));
    }
    EXPECT_EQ(CurrentBridge(), nullptr);
    EXPECT_EQ(instance, nullptr);
}

// A watcher that the agent keeps busy is not waited for beyond its time: it frees the instance when it ends.
TEST_F(EntryText, OfAnExitWhoseWatcherIsBusyLeavesTheRestToIt) {
    WatchCount watches;
    ASSERT_TRUE(Enter("PRODUCT1000"));
    ASSERT_TRUE(watches.WaitFor(1));
    NyClientNotifier& watcher = *instance->ClientRecord()->client->notifier.load();
    watcher.stopTimeout = 1;
    const ThreadCopy thread(watcher.thread.get());
    HeldAgentCall hold("ny_client_handler_create");
    environment.UpgradeAgent("5.8.0");
    ASSERT_TRUE(hold.isInside.Wait());
    EXPECT_TRUE(VsMsgbusExit("PRODUCT1000", instance));
    EXPECT_EQ(CurrentBridge(), nullptr);
    hold.mayGoOn.Set();
    thread.WaitForEnd();
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
    EXPECT_EQ(::GetModuleHandleA("ny_client.dll"), nullptr);
}

}  // namespace
