// Registering a client for notifications: the watcher that this creates, and its end.
#include <windows.h>

#include <functional>
#include <memory>
#include <utility>

#include "msgbus/client/NyClientFixture.h"
#include "msgbus/client/NyClientNotifier.h"
#include "msgbus/client/SystemCalls.h"
#include "msgbus/client/ThreadCopy.h"
#include "msgbus/client/WatchCount.h"
#include "support/Checkpoint.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char registering[] = "5 ny_client: registering for ny client notifications.";
constexpr char unregistering[] = "5 ny_client: unregistering for ny client notifications.";
constexpr char installed[] = "5 ny_client: agent is installed, msgbus version 5.7.0";
constexpr char started[] = "5 ny_client: ny client notifier thread started.";
constexpr char exiting[] = "5 ny_client: ny client notifier thread exiting...";
constexpr char stopped[] = "5 ny_client: ny client notifier thread stopped successfully.";
constexpr char notStopped[] = "2 ny_client: failed to stop ny client notifier thread.";

class NyClientRegister : public NyClientFixture {
protected:
    int32_t Register() { return NyClientRegisterNotifications(client, Notify, this); }
    // Returns when no change goes by unseen any more; forgets the lines.
    void RegisterAndWatch() {
        ASSERT_EQ(Register(), NY_OK);
        ASSERT_TRUE(watches.WaitFor(1));
        lines.client.Take();
    }

    // Leaves the watcher's thread inside the notification of an upgrade's stop.
    void RegisterAndHold() {
        RegisterAndWatch();
        client->notifier.load()->stopTimeout = 1;
        held = std::make_unique<Checkpoint>();
        onNotification = [](NyClient*, uint32_t) { held->Stop(); };
        environment.Installer().WriteVersion("5.8.0");
        ASSERT_TRUE(held->isInside.Wait());
        lines.client.Take();
    }

    static inline std::unique_ptr<Checkpoint> held;

    WatchCount watches;
};

TEST_F(NyClientRegister, RefusesNull) {
    EXPECT_EQ(NyClientRegisterNotifications(nullptr, Notify, this), NY_INVALID_ARGUMENT);
    EXPECT_EQ(NyClientRegisterNotifications(client, nullptr, this), NY_INVALID_ARGUMENT);
    EXPECT_EQ(NyClientUnregisterNotifications(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(client->notifier.load(), nullptr);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
}

TEST_F(NyClientRegister, TellsOfAnAgentThatIsThereBeforeItReturns) {
    EXPECT_EQ(Register(), NY_OK);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(registering, installed, toStart, "told 1", started));
    EXPECT_EQ(client->stateHandler, NyClientNotifyState);
    EXPECT_EQ(client->notified.load(), 1U);
}

TEST_F(NyClientRegister, ASecondTimeKeepsTheFirstCallback) {
    ASSERT_EQ(Register(), NY_OK);
    NyClientNotifier* const notifier = client->notifier.load();
    lines.client.Take();
    EXPECT_EQ(NyClientRegisterNotifications(
                  client, [](NyClient*, uint32_t, void*) { FAIL() << "the first callback counts"; }, nullptr),
              NY_OK);
    EXPECT_EQ(client->notifier.load(), notifier);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
}

TEST_F(NyClientRegister, TellsOfAnInstallationOnce) {
    environment.Installer().DeleteVersion();
    RegisterAndWatch();
    environment.Installer().WriteVersion("5.7.0");
    ASSERT_TRUE(lines.client.WaitFor("told 1"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre(installed, toStart, "told 1"));
}

TEST_F(NyClientRegister, TellsOfAnUpgradeAsStopAndStart) {
    RegisterAndWatch();
    environment.Installer().WriteVersion("5.8.0");
    ASSERT_TRUE(lines.client.WaitFor("told 1"));
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: agent is upgraded, msgbus version 5.8.0", toStop,
                                                  "told 0", toStart, "told 1"));
}

TEST_F(NyClientRegister, TellsOfARemovalOnce) {
    RegisterAndWatch();
    environment.Installer().DeleteVersion();
    ASSERT_TRUE(lines.client.WaitFor("told 0"));
    // One more change, and one more look that finds nothing.
    environment.Installer().DeleteRuntimePath();
    ASSERT_TRUE(lines.client.WaitForSize(4));
    EXPECT_THAT(lines.client.Lines(),
                ElementsAre("5 ny_client: no msgbus version, agent is not installed, rc(2)", toStop, "told 0",
                            "5 ny_client: no msgbus version, agent is not installed, rc(2)"));
}

TEST_F(NyClientRegister, WithoutMemoryAnswersSo) {
    {
        const FailingMemory memory;
        EXPECT_EQ(Register(), NY_OUT_OF_MEMORY);
    }
    EXPECT_EQ(client->notifier.load(), nullptr);
    EXPECT_EQ(client->notification.load(), nullptr);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
}

TEST_F(NyClientRegister, WithoutAThreadIsNoFailure) {
    const NoThreads failing;
    EXPECT_EQ(Register(), NY_OK);
    EXPECT_THAT(lines.client.Take(), ElementsAre(registering, installed, toStart, "told 1",
                                                 "2 ny_client: failed to start ny client notifier."));
    EXPECT_EQ(NyClientUnregisterNotifications(client), NY_OK);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(unregistering, toStop, "told 0"));
}

TEST_F(NyClientRegister, EndsWithTheWatcherAndAStop) {
    RegisterAndWatch();
    EXPECT_EQ(NyClientUnregisterNotifications(client), NY_OK);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(unregistering, exiting, stopped, toStop, "told 0"));
    EXPECT_EQ(client->notifier.load(), nullptr);
    EXPECT_EQ(client->notified.load(), 0U);
    EXPECT_EQ(client->notification.load(), nullptr);
    EXPECT_EQ(client->notificationUserData.load(), nullptr);
}

TEST_F(NyClientRegister, EndsSilentlyForAPointProductThatWasNotToldOfAStart) {
    environment.Installer().DeleteVersion();
    RegisterAndWatch();
    EXPECT_EQ(NyClientUnregisterNotifications(client), NY_OK);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(unregistering, exiting, stopped));
}

TEST_F(NyClientRegister, ThatIsNotThereEndsSilently) {
    EXPECT_EQ(NyClientUnregisterNotifications(client), NY_OK);
    EXPECT_THAT(lines.client.Lines(), IsEmpty());
}

TEST_F(NyClientRegister, CanFollowOneThatEnded) {
    RegisterAndWatch();
    ASSERT_EQ(NyClientUnregisterNotifications(client), NY_OK);
    lines.client.Take();
    EXPECT_EQ(Register(), NY_OK);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(registering, installed, toStart, "told 1", started));
}

// Unregistering takes nothing away while a notification runs: the thread that is inside it does the rest when it
// returns.
TEST_F(NyClientRegister, WhoseThreadIsBusyEndsWhenThatIsBack) {
    RegisterAndHold();
    const ThreadCopy thread(client->notifier.load()->thread.get());
    EXPECT_EQ(NyClientUnregisterNotifications(client), NY_OK);
    EXPECT_THAT(lines.client.Take(), ElementsAre(unregistering, notStopped));
    EXPECT_EQ(client->notifier.load(), nullptr);
    EXPECT_EQ(client->notification.load(), Notify);
    held->mayGoOn.Set();
    thread.WaitForEnd();
    EXPECT_THAT(lines.client.Lines(), ElementsAre(exiting));
    EXPECT_EQ(client->notification.load(), nullptr);
    EXPECT_EQ(client->notified.load(), 0U);
}

TEST_F(NyClientRegister, WhoseThreadIsBusyKeepsTheClientAliveUntilItEnds) {
    RegisterAndHold();
    ASSERT_EQ(NyClientStart(client), NY_OK);
    const ThreadCopy thread(client->notifier.load()->thread.get());
    lines.client.Take();
    EXPECT_EQ(NyClientRelease(client), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 1U);
    EXPECT_THAT(lines.client.Take(), ElementsAre(notStopped));
    held->mayGoOn.Set();
    thread.WaitForEnd();
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 0U);
    EXPECT_EQ(::GetModuleHandleA("ny_client.dll"), nullptr);
    client = nullptr;
}

// Lets a second registration come in while the first one makes its watcher.
class RegisteringTwice {
public:
    explicit RegisteringTwice(std::function<void()> secondRegistration) : second(std::move(secondRegistration)) {
        current = this;
    }

private:
    static HANDLE WINAPI Create(SECURITY_ATTRIBUTES* security, WINBOOL manualReset, WINBOOL state, const char* name) {
        if (const auto register2 = std::exchange(current->second, nullptr)) {
            register2();
        }
        return current->creating.original(security, manualReset, state, name);
    }

    static inline RegisteringTwice* current = nullptr;
    std::function<void()> second;
    SystemFunction<decltype(::CreateEventA)> creating{&::CreateEventA, &Create};
};

TEST_F(NyClientRegister, TwiceAtATimeKeepsTheFirstCallback) {
    NyClientNotifier* winner = nullptr;
    const auto never = [](NyClient*, uint32_t, void*) { FAIL() << "the callback that came first counts"; };
    {
        const RegisteringTwice twice([&] {
            EXPECT_EQ(Register(), NY_OK);
            winner = client->notifier.load();
        });
        EXPECT_EQ(NyClientRegisterNotifications(client, never, nullptr), NY_OK);
    }
    ASSERT_NE(winner, nullptr);
    EXPECT_EQ(client->notifier.load(), winner);
    EXPECT_EQ(client->notification.load(), Notify);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(registering, installed, toStart, "told 1", started));
}

TEST_F(NyClientRegister, EndsSilentlyWithoutANotificationCallback) {
    RegisterAndWatch();
    client->notification = nullptr;
    EXPECT_EQ(NyClientUnregisterNotifications(client), NY_OK);
    EXPECT_THAT(lines.client.Lines(), ElementsAre(unregistering, exiting, stopped));
    EXPECT_EQ(client->notified.load(), 0U);
}

}  // namespace
