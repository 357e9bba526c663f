#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "msgbus/client/NyClient.h"
#include "msgbus/client/NyClientNotifier.h"
#include "msgbus/client/WatchCount.h"
#include "support/AgentEnvironment.h"
#include "support/Checkpoint.h"
#include "support/Event.h"

// A watcher whose client is no more than its log lines and the states that it is told. No agent's library is needed:
// the agent is there when its version is in the registry.
class NotifierFixture : public AgentTest {
protected:
    NotifierFixture() {
        client.log.sink = Log;
        client.log.userData = this;
        client.stateHandler = HandleState;
        client.notificationUserData = this;
    }

    void SetUp() override { ASSERT_EQ(NotifierCreate(&client, &notifier), NY_OK); }

    void TearDown() override {
        End();
        AgentTest::TearDown();
    }

    // Starts the watcher. What its thread logs comes after what is logged within this call.
    int32_t Start() {
        const int32_t result = NotifierStart(notifier);
        hasStarted.Set();
        return result;
    }
    // Starts it and returns when no change goes by unseen any more; what then goes by all the same is not found by
    // waiting either. Forgets the lines of the start.
    void StartAndWatch() {
        notifier->waitTimeout = INFINITE;
        ASSERT_EQ(Start(), NY_OK);
        ASSERT_TRUE(watches.WaitFor(1));
        lines.Take();
    }
    // Calls StartAndWatch on a machine with version 5.7.0 of the agent.
    void InstallAndWatch() {
        WriteVersion("5.7.0");
        StartAndWatch();
    }
    // Waits until the watcher tells a start of the agent, and compares all that it tells.
    void ExpectStart(const std::string& whyLine) {
        ASSERT_TRUE(lines.WaitFor("state 1"));
        EXPECT_THAT(lines.Take(), testing::ElementsAre(whyLine, "state 0", "state 1"));
    }
    void End() {
        if (notifier != nullptr) {
            hasStarted.Set();
            held.mayGoOn.Set();
            NotifierStop(notifier);
            WaitForThread();
            EXPECT_EQ(NotifierDestroy(notifier), NY_OK);
            notifier = nullptr;
        }
    }
    void WaitForThread() const {
        if (notifier->thread != nullptr) {
            EXPECT_EQ(::WaitForSingleObject(notifier->thread.get(), static_cast<DWORD>(soon.count())), WAIT_OBJECT_0);
        }
    }

    // Has the watcher's thread wait within the first state that it reports from now on, until Continue().
    void HoldAtNextState() {
        onState = [this](uint32_t) { held.Stop(); };
    }
    bool WaitUntilHeld() const { return held.isInside.Wait(); }
    void UpgradeAndHold(const std::string& version) {
        HoldAtNextState();
        WriteVersion(version);
        ASSERT_TRUE(WaitUntilHeld());
    }
    void Continue() { held.mayGoOn.Set(); }

    void WriteVersion(const std::string& version) { environment.Installer().WriteVersion(version); }
    // Deletes the key together with its value, without a notification under Wine.
    static LSTATUS DeleteKey() {
        return ::RegDeleteKeyExA(HKEY_LOCAL_MACHINE, "Software\\Corvane\\Agent", KEY_WOW64_64KEY, 0);
    }

    NyClient client;
    NyClientNotifier* notifier = nullptr;
    LineLog lines;  // log lines as "<severity> <module>: <text>", states as "state <state>"
    WatchCount watches;
    std::function<void(uint32_t state)> onState;
    std::function<void(const std::string& line)> onLine;

private:
    static int32_t Log(uint32_t severity, const char* module, const char* message, void* userData) {
        auto& fixture = *static_cast<NotifierFixture*>(userData);
        if (::GetCurrentThreadId() != fixture.testThread) {
            EXPECT_TRUE(fixture.hasStarted.Wait());
        }
        const std::string line = std::to_string(severity) + " " + module + ": " + message;
        fixture.lines.Add(line);
        if (fixture.onLine) {
            fixture.onLine(line);
        }
        return NY_OK;
    }

    static int32_t HandleState(NyClient* told, uint32_t state, void* userData) {
        auto& fixture = *static_cast<NotifierFixture*>(userData);
        EXPECT_EQ(told, &fixture.client);
        fixture.lines.Add("state " + std::to_string(state));
        if (fixture.onState) {
            fixture.onState(state);
        }
        return NY_OK;
    }

    const DWORD testThread = ::GetCurrentThreadId();
    Event hasStarted;
    Checkpoint held;
};

// The lines that the tests have in common.
inline constexpr char threadStarted[] = "5 ny_client: ny client notifier thread started.";
inline constexpr char threadExiting[] = "5 ny_client: ny client notifier thread exiting...";
inline constexpr char threadStopped[] = "5 ny_client: ny client notifier thread stopped successfully.";
inline constexpr char threadNotStopped[] = "2 ny_client: failed to stop ny client notifier thread.";
inline constexpr char noVersion[] = "5 ny_client: no msgbus version, agent is not installed, rc(2)";
inline constexpr char keyMissing[] =
    "2 ny_client: failed to open registry Corvane\\Agent\\, error(2), waiting for registry key to be re-established";
inline constexpr char keyMissingAtCheck[] = "2 ny_client: failed to open registry Corvane\\Agent\\, error <2>";
inline constexpr char pausing[] = "6 ny_client: pause for registry key to be re-established";

inline std::string Installed(const std::string& version) {
    return "5 ny_client: agent is installed, msgbus version " + version;
}
inline std::string Upgraded(const std::string& version) {
    return "5 ny_client: agent is upgraded, msgbus version " + version;
}

inline bool IsOpen(HANDLE handle) {
    DWORD flags = 0;
    return ::GetHandleInformation(handle, &flags) != FALSE;
}
