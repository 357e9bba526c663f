#include "agent/ny_agent.h"
#include "dispatcher/DispatcherLog.h"
#include "msgbus/client/NyClient.h"
#include "msgbus/client/NyClientNotifier.h"

#include <cstring>

namespace bridge {

namespace {

// After a wait that failed, so that a system in trouble is not asked in a tight loop.
constexpr DWORD failedWaitPause = 100;

void Tell(NyClientNotifier& notifier, uint32_t state) noexcept {
    NyClient* const client = notifier.client;
    if (notifier.exitRequested.load() == 0 && client->stateHandler != nullptr) {
        client->stateHandler(client, state, client->notificationUserData);
    }
}

void LogNotInstalled(NyClientNotifier& notifier, LSTATUS error) noexcept {
    std::memset(notifier.version, 0, sizeof notifier.version);
    NyClientLog(notifier.client, SeverityProgress, nyClientModule, "no msgbus version, agent is not installed, rc(%ld)",
                static_cast<long>(error));
}

void PauseForKey(NyClientNotifier& notifier, LSTATUS error) noexcept {
    NyClientLog(notifier.client, SeverityFailure, nyClientModule,
                "failed to open registry %s, error(%ld), waiting for registry key to be re-established",
                AgentKey::displayName, static_cast<long>(error));
    NyClientLog(notifier.client, SeverityDetail, nyClientModule, "pause for registry key to be re-established");
    notifier.waitTimeout = notifier.pauseTimeout;
    if (::WaitForSingleObject(notifier.stopEvent.get(), notifier.pauseTimeout) == WAIT_OBJECT_0) {
        notifier.exitRequested = 1;
        return;
    }
    NotifierCheckAgent(&notifier);
}

// Asks for the next notification.
LSTATUS Watch(NyClientNotifier& notifier, const AgentKey& key) noexcept {
    ::ResetEvent(notifier.changeEvent.get());
    return key.Watch(notifier.changeEvent.get());
}

bool WatchOrLog(NyClientNotifier& notifier, const AgentKey& key) noexcept {
    const LSTATUS error = Watch(notifier, key);
    if (error != ERROR_SUCCESS) {
        NyClientLog(notifier.client, SeverityFailure, nyClientModule, "failed to setup registry %s monitor, error(%ld)",
                    AgentKey::displayName, static_cast<long>(error));
    }
    return error == ERROR_SUCCESS;
}

// Reads the version and tells the client what became of the agent.
void FollowVersion(NyClientNotifier& notifier, const AgentKey& key) noexcept {
    AgentVersion version;
    const LSTATUS error = key.ReadVersion(version);
    if (error != ERROR_SUCCESS) {
        LogNotInstalled(notifier, error);
        Tell(notifier, NyClientStateStopped);
        return;
    }
    if (std::memcmp(version, notifier.version, sizeof version) == 0) {
        return;
    }
    NyClientLog(
        notifier.client, SeverityProgress, nyClientModule,
        notifier.version[0] != '\0' ? "agent is upgraded, msgbus version %s" : "agent is installed, msgbus version %s",
        version);
    std::memcpy(notifier.version, version, sizeof version);
    Tell(notifier, NyClientStateStopped);
    Tell(notifier, NyClientStateStarted);
}

// Waits for a change, the stop or the time-out. Whether the version is to be read.
bool WaitForChange(NyClientNotifier& notifier, AgentKey& key) noexcept {
    const HANDLE events[] = {notifier.changeEvent.get(), notifier.stopEvent.get()};
    const DWORD result = ::WaitForMultipleObjects(2, events, FALSE, notifier.waitTimeout);
    if (result == WAIT_OBJECT_0) {
        return true;
    }
    if (result == WAIT_OBJECT_0 + 1) {
        notifier.exitRequested = 1;
        return false;
    }
    if (result != WAIT_TIMEOUT) {
        key.Close();
        ::Sleep(failedWaitPause);
        return false;
    }
    // The version is read once when the first time passes without a change; from then on only changes count.
    if (notifier.waitTimeout == INFINITE) {
        notifier.exitRequested = 1;
    }
    notifier.waitTimeout = INFINITE;
    return true;
}

}  // namespace

int32_t NotifierCheckAgent(NyClientNotifier* notifier) noexcept {
    AgentKey key;
    LSTATUS error = key.Open();
    if (error != ERROR_SUCCESS) {
        NyClientLog(notifier->client, SeverityFailure, nyClientModule, "failed to open registry %s, error <%ld>",
                    AgentKey::displayName, static_cast<long>(error));
        return NY_OK;
    }
    AgentVersion version;
    error = key.ReadVersion(version);
    if (error != ERROR_SUCCESS) {
        LogNotInstalled(*notifier, error);
    } else if (version[0] != '\0') {
        NyClientLog(notifier->client, SeverityProgress, nyClientModule, "agent is installed, msgbus version %s",
                    version);
        std::memcpy(notifier->version, version, sizeof version);
        Tell(*notifier, NyClientStateStarted);
    }
    return NY_OK;
}

// A notification comes once, and what changes while none is asked for goes by unseen. So the next one is asked for
// before the version is read, on the same key; and where that fails (a deleted key), the version is read once more
// after the key was opened anew.
void NotifierWatch(NyClientNotifier& notifier) noexcept {
    AgentKey key;
    bool isVersionDue = false;
    while (notifier.exitRequested.load() == 0) {
        if (!key.IsOpen()) {
            const LSTATUS error = key.Open();
            if (error != ERROR_SUCCESS) {
                PauseForKey(notifier, error);
                isVersionDue = false;
                continue;
            }
            if (!WatchOrLog(notifier, key)) {
                break;
            }
            if (isVersionDue) {
                FollowVersion(notifier, key);
                isVersionDue = false;
                continue;
            }
        }
        if (!WaitForChange(notifier, key)) {
            continue;
        }
        // Also when the last one may never come: Wine does not tell of a watched key's deletion, which this finds out.
        const bool isWatched = Watch(notifier, key) == ERROR_SUCCESS;
        FollowVersion(notifier, key);
        if (!isWatched) {
            key.Close();
            isVersionDue = true;
        }
    }
    notifier.running = 0;
    NyClientLog(notifier.client, SeverityProgress, nyClientModule, "ny client notifier thread exiting...");
}

}  // namespace bridge
