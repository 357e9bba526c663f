// The bridge instance's life and its callbacks, and the texts that are composed and dropped on the way.
#include "msgbus/instance/VsMsgbus.h"

#include <memory>
#include <optional>
#include <utility>

#include "msgbus/client/NyClientNotifier.h"
#include "msgbus/client/WatchCount.h"
#include "msgbus/instance/VsMsgbusFixture.h"
#include "support/Checkpoint.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VsMsgbusLife : public VsMsgbusFixture {
protected:
    // The texts that came after an agent was found and before it was let go.
    static constexpr char told[] = "VsMsgbus received client notification with type :[1]";
    static constexpr char toldOfStop[] = "VsMsgbus received client notification with type :[0]";
};

TEST_F(VsMsgbusLife, BeginsWithAClientOfItsOwn) {
    const VsMsgbusClientRecord& record = *bridge->ClientRecord();
    EXPECT_EQ(record.client->productId, "PRODUCT1000");
    EXPECT_EQ(record.isOwned, 1);
    EXPECT_EQ(record.logger, static_cast<corvane::ny::client_logger*>(bridge.get()));
    EXPECT_EQ(record.reserved, 0U);
    EXPECT_EQ(record.client->log.userData, bridge->ClientRecord());
    EXPECT_EQ(record.client->passphraseCallback, nullptr);
    EXPECT_FALSE(bridge->IsStarted());
    EXPECT_TRUE(bridge->EndWithoutProducts());
    EXPECT_THAT(bridge->CopyIos(), IsEmpty());
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

// Whichever allocation it is that fails.
TEST_F(VsMsgbusLife, WithoutMemoryForTheClientGoesOnWithoutOne) {
    Destroy();
    size_t failed = 0;
    for (bool hasClient = false; !hasClient; ++failed) {
        ASSERT_LT(failed, 100U);
        std::optional<VsMsgbus> created;
        {
            const FailingMemory memory(failed, 1);
            created.emplace("a product id that is too long to be kept without memory");
        }
        hasClient = created->HasClient();
        if (!hasClient) {
            EXPECT_EQ(created->ClientRecord(), nullptr);
            EXPECT_THAT(dropped.log.Take(),
                        ElementsAre(failed == 0 ? "VsMsgbus client creation failed, exception:[std::bad_alloc]"
                                                : "VsMsgbus client creation failed, exception:[Unknown exception]"));
        }
    }
    EXPECT_GT(failed, 3U);
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusLife, EndsWithItsWatcherAndItsClient) {
    bridge->RegisterForNotifications();
    ASSERT_TRUE(bridge->IsStarted());
    Destroy();
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 0U);
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(told));
}

TEST_F(VsMsgbusLife, StartsAndStopsWithItsRegistration) {
    bridge->RegisterForNotifications();
    EXPECT_TRUE(bridge->IsStarted());
    bridge->UnregisterForNotifications();
    EXPECT_FALSE(bridge->IsStarted());
    EXPECT_THAT(dropped.log.Lines(), ElementsAre(told, toldOfStop));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

HANDLE WINAPI CreateNoEvent(SECURITY_ATTRIBUTES*, WINBOOL, WINBOOL, const char*) {
    return nullptr;
}

TEST_F(VsMsgbusLife, DropsTheTextOfARegistrationThatFailed) {
    const SystemFunction<decltype(::CreateEventA)> failing(&::CreateEventA, &CreateNoEvent);
    bridge->RegisterForNotifications();
    EXPECT_THAT(dropped.log.Lines(),
                ElementsAre("Failed to register for VsMsgbus client notification, exception:[Unknown exception]"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusLife, DropsTheTextOfAnUnregistrationThatFailed) {
    NyClient* const client = std::exchange(bridge->ClientRecord()->client, nullptr);
    bridge->UnregisterForNotifications();
    bridge->ClientRecord()->client = client;
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("Failed to unregister for VsMsgbus client notification due to, "
                                                 "exception:[Unknown exception]"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

// Stands for a notification that does not return.
struct Hold : Checkpoint {
    static int32_t HoldThread(NyClient*, uint32_t, void*) {
        current->Stop();
        return NY_OK;
    }
    static inline Hold* current = nullptr;
};

TEST_F(VsMsgbusLife, TellsOfAWatcherThatDoesNotEndInTime) {
    const WatchCount watches;
    bridge->RegisterForNotifications();
    ASSERT_TRUE(watches.WaitFor(1));
    NyClientNotifier* const notifier = NotifierShare(Client()->notifier.load());
    notifier->stopTimeout = 1;
    Hold hold;
    Hold::current = &hold;
    Client()->stateHandler = Hold::HoldThread;
    environment.Installer().WriteVersion("5.8.0");
    ASSERT_TRUE(hold.isInside.Wait());
    dropped.log.Take();
    bridge->UnregisterForNotifications();
    EXPECT_THAT(dropped.log.Take(), ElementsAre(toldOfStop));
    EXPECT_THAT(sink.log.Lines(),
                ElementsAre("3: NY log message, [ny_client] failed to stop ny client notifier thread."));
    EXPECT_FALSE(bridge->IsStarted());
    hold.mayGoOn.Set();
    EXPECT_EQ(::WaitForSingleObject(notifier->thread.get(), static_cast<DWORD>(soon.count())), WAIT_OBJECT_0);
    NotifierDestroy(notifier);
}

class VsMsgbusCallbacks : public VsMsgbusFixture {};

TEST_F(VsMsgbusCallbacks, PassOnLinesOfSeverity2Alone) {
    corvane::ny::client_logger& logger = *bridge;
    for (const int32_t severity : {-1, 0, 1, 2, 3, 4, 5, 6, 0x10002}) {
        logger.Log(severity, "module", std::to_string(severity).c_str());
    }
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [module] 2"));
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

// A sink that keeps the characters as they come.
class WideSink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int /*level*/, const wchar_t* text) override { last = text; }
    std::wstring last;
};

TEST_F(VsMsgbusCallbacks, WidenLinesByteByByteWithTheSign) {
    WideSink wideSink;
    ClearLogSink();
    ASSERT_TRUE(OfferLogSink(&wideSink));
    std::string message;
    std::wstring widened;
    for (int byte = 1; byte < 256; ++byte) {
        message.push_back(static_cast<char>(byte));
        widened.push_back(static_cast<wchar_t>(byte < 0x80 ? byte : 0xFF00 + byte));
    }
    bridge->Log(2, "\xC3\xA9", message.c_str());
    EXPECT_EQ(wideSink.last, L"NY log message, [\xFFC3\xFFA9] " + widened);
    ClearLogSink();
}

TEST_F(VsMsgbusCallbacks, TakeLinesWithoutModuleOrMessage) {
    bridge->Log(2, nullptr, nullptr);
    bridge->Log(2, "", "");
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [] ", "3: NY log message, [] "));
}

TEST_F(VsMsgbusCallbacks, SayNothingWithoutASink) {
    ClearLogSink();
    bridge->Log(2, "module", "text");
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusCallbacks, SupplyNoPassphrase) {
    corvane::ny::passphrase_provider& provider = *bridge;
    unsigned char passphrase[] = {1, 2, 3};
    size_t size = 3;
    EXPECT_EQ(provider.GetPassphrase(passphrase, &size), 0);
    EXPECT_THAT(passphrase, ElementsAre(1, 2, 3));
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(provider.GetPassphrase(nullptr, nullptr), 0);
}

TEST_F(VsMsgbusCallbacks, DropLinesWithoutALogger) {
    bridge->ClientRecord()->logger = nullptr;
    EXPECT_EQ(NyClientLog(Client(), SeverityFailure, "module", "text"), NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(VsMsgbusCallbacks, ArePublishedOnce) {
    const auto first = std::make_shared<VsMsgbus>("PRODUCT2000");
    ASSERT_EQ(PublishBridge(first), first);
    EXPECT_EQ(PublishBridge(std::make_shared<VsMsgbus>("PRODUCT3000")), first);
    EXPECT_EQ(CurrentBridge(), first.get());
    WithdrawBridge(bridge.get());
    EXPECT_EQ(ShareBridge(), first);
    WithdrawBridge(first.get());
    EXPECT_EQ(CurrentBridge(), nullptr);
    EXPECT_EQ(ShareBridge(), nullptr);
}

}  // namespace
