// One change of an agent client at a time, and what is asked for meanwhile.
#include "msgbus/client/ClientChanges.h"

#include <functional>
#include <thread>

#include "msgbus/client/NyClientFixture.h"
#include "support/Checkpoint.h"

namespace {

using testing::ElementsAre;

class ClientChanges : public NyClientFixture {
protected:
    void SetUp() override {
        NyClientFixture::SetUp();
        client->notificationUserData = this;
        client->notification = Told;
    }

    static void Told(NyClient* /*told*/, uint32_t state, void* userData) {
        auto& test = *static_cast<ClientChanges*>(userData);
        test.told.Add("told " + std::to_string(state));
        if (const auto happening = std::exchange(test.whileTold, nullptr)) {
            happening();
        }
        test.told.Add("was told " + std::to_string(state));
    }

    LineLog told;
    std::function<void()> whileTold;  // once
};

TEST_F(ClientChanges, ThatAreAskedForInsideAnotherComeAfterIt) {
    whileTold = [this] { ChangeClient(*client, ClientChange::Stop); };
    ChangeClient(*client, ClientChange::Start);
    EXPECT_THAT(told.Lines(), ElementsAre("told 1", "was told 1", "told 0", "was told 0"));
    EXPECT_EQ(client->notified.load(), 0U);
}

TEST_F(ClientChanges, ThatAreAskedForOnAnotherThreadAreMadeByTheOneThatIsAtThem) {
    DWORD stopper = 0;
    whileTold = [&] {
        std::thread([this] { ChangeClient(*client, ClientChange::Stop); }).join();
        whileTold = [&] { stopper = ::GetCurrentThreadId(); };
    };
    ChangeClient(*client, ClientChange::Start);
    EXPECT_THAT(told.Lines(), ElementsAre("told 1", "was told 1", "told 0", "was told 0"));
    EXPECT_EQ(stopper, ::GetCurrentThreadId());
}

TEST_F(ClientChanges, AreARestartWhenAStopAndAStartAreAskedForMeanwhile) {
    whileTold = [this] {
        ChangeClient(*client, ClientChange::Stop);
        ChangeClient(*client, ClientChange::Start);
    };
    ChangeClient(*client, ClientChange::Start);
    EXPECT_THAT(told.Lines(), ElementsAre("told 1", "was told 1", "told 0", "was told 0", "told 1", "was told 1"));
    ChangeClient(*client, ClientChange::Stop);
}

TEST_F(ClientChanges, AreAStopWhenAStartIsOvertakenByOne) {
    whileTold = [this] {
        ChangeClient(*client, ClientChange::Stop);
        ChangeClient(*client, ClientChange::Start);
        ChangeClient(*client, ClientChange::Stop);
    };
    ChangeClient(*client, ClientChange::Start);
    EXPECT_THAT(told.Lines(), ElementsAre("told 1", "was told 1", "told 0", "was told 0"));
}

// The client's end does not take it away from under the change.
TEST_F(ClientChanges, OfAClientThatEndsMeanwhileEndItAfterwards) {
    whileTold = [this] {
        EXPECT_EQ(NyClientStart(client), NY_OK);
        EXPECT_EQ(NyClientRelease(client), NY_OK);
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 1U);
        EXPECT_EQ(NyClientNotifyState(client, 0, nullptr), NY_OK);
    };
    ChangeClient(*client, ClientChange::Start);
    client = nullptr;
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 0U);
    EXPECT_THAT(told.Lines(), ElementsAre("told 1", "was told 1", "told 0", "was told 0"));
}

TEST_F(ClientChanges, OfOneClientKeepThoseOfAnotherWaiting) {
    NyClient* const other = MakeClient("PRODUCT2000");
    other->notificationUserData = this;
    other->notification = Told;
    whileTold = [&] {
        ChangeClient(*other, ClientChange::Start);
        EXPECT_EQ(other->notified.load(), 0U);
    };
    ChangeClient(*client, ClientChange::Start);
    EXPECT_EQ(other->notified.load(), 1U);
    EXPECT_THAT(told.Lines(), ElementsAre("told 1", "was told 1", "told 1", "was told 1"));
    ChangeClient(*other, ClientChange::Unregister);
    EXPECT_EQ(other->notified.load(), 0U);
    EXPECT_EQ(other->notification.load(), nullptr);
    NyClientRelease(other);
    ChangeClient(*client, ClientChange::Stop);
}

TEST_F(ClientChanges, OfAWatcherAreWaitedForByThreadsThatPromiseThem) {
    Checkpoint held;
    Event isThrough;
    whileTold = [&] { held.Stop(); };
    std::thread watcher([&] { ChangeClient(*client, ClientChange::Start, 1, true); });
    EXPECT_TRUE(held.isInside.Wait());
    EXPECT_FALSE(IsChangingClients(0));
    EXPECT_FALSE(IsChangingClients(::GetCurrentThreadId()));
    std::thread waiting([&] {
        WaitForChangesOf(*client);
        isThrough.Set();
    });
    EXPECT_FALSE(isThrough.Wait(std::chrono::milliseconds(30)));
    held.mayGoOn.Set();
    EXPECT_TRUE(isThrough.Wait());
    watcher.join();
    waiting.join();
    ChangeClient(*client, ClientChange::Stop);
}

// A thread that would wait for the change may be the one that the change waits for.
TEST_F(ClientChanges, OfAModulesThreadAreNotWaitedFor) {
    whileTold = [this] {
        EXPECT_TRUE(IsChangingClients(::GetCurrentThreadId()));
        WaitForChangesOf(*client);
        std::thread([this] { WaitForChangesOf(*client); }).join();
    };
    ChangeClient(*client, ClientChange::Start);
    ChangeClient(*client, ClientChange::Stop);
}

}  // namespace
