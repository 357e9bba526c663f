#include "msgbus/client/ClientChanges.h"

#include <utility>

#include "base/CallGate.h"
#include "base/Mutex.h"
#include "dispatcher/AgentCalls.h"
#include "msgbus/client/AgentUse.h"
#include "msgbus/client/NyClient.h"

namespace bridge {

namespace {

Mutex lock;  // also guards the pending changes of every client
NyClient* first GUARDED_BY(lock) = nullptr;
NyClient* last GUARDED_BY(lock) = nullptr;
DWORD changingThread GUARDED_BY(lock) = 0;  // 0: none
bool isChangedByWatcher GUARDED_BY(lock) = false;
const NyClient* changingClient GUARDED_BY(lock) = nullptr;
Condition changed;

void Note(PendingChanges& pending, ClientChange change, uint32_t state) noexcept {
    switch (change) {
        case ClientChange::Stop:
            pending.mustStop = true;
            pending.startState = 0;
            break;
        case ClientChange::Start: pending.startState = state; break;
        case ClientChange::Unregister: pending.mustUnregister = true; break;
        case ClientChange::Release: pending.mustRelease = true; break;
    }
}

void Append(NyClient& client, std::shared_ptr<void>& share) noexcept REQUIRES(lock) {
    if (client.pending.isQueued) {
        return;
    }
    client.pending.isQueued = true;
    client.pending.client.swap(share);
    (last != nullptr ? last->pending.next : first) = &client;
    last = &client;
}

// The next client with its pending changes. Null when there is none: no thread makes changes any more then.
NyClient* TakeNext(PendingChanges& taken) noexcept {
    const ScopedLock guard(lock);
    NyClient* const client = first;
    changingClient = client;
    changed.NotifyAll();
    if (client == nullptr) {
        changingThread = 0;
        return nullptr;
    }
    taken = std::exchange(client->pending, {});
    first = taken.next;
    last = first != nullptr ? last : nullptr;
    return client;
}

void MakeChanges(NyClient& client, const PendingChanges& changes) noexcept {
    const LongAgentCall longCall;
    if (changes.mustStop) {
        NyClientMakeStop(client);
    }
    if (changes.startState != 0) {
        NyClientMakeStart(client, changes.startState);
    }
    if (changes.mustUnregister) {
        NyClientMakeUnregister(client);
    }
    if (changes.mustRelease) {
        NyClientMakeRelease(client);
    }
}

}  // namespace

void ChangeClient(NyClient& client, ClientChange change, uint32_t state, bool isWatcher) noexcept {
    std::shared_ptr<void> share = FindAgentCalls(CallData<NyClient>(&client), {});
    if (share == nullptr) {
        // The client was released meanwhile.
        return;
    }
    {
        const ScopedLock guard(lock);
        Note(client.pending, change, state);
        Append(client, share);
        if (changingThread != 0) {
            return;
        }
        changingThread = ::GetCurrentThreadId();
        isChangedByWatcher = isWatcher;
    }
    for (;;) {
        PendingChanges changes;
        NyClient* const next = TakeNext(changes);
        if (next == nullptr) {
            return;
        }
        MakeChanges(*next, changes);
    }
}

void WaitForChangesOf(const NyClient& client) noexcept {
    if (AgentCall::IsUnderWay()) {
        return;
    }
    const ScopedLock guard(lock);
    if (!isChangedByWatcher || changingThread == ::GetCurrentThreadId()) {
        return;
    }
    const auto end = Condition::Clock::now() + callWaitLimit;
    while ((client.pending.isQueued || changingClient == &client) && changed.WaitUntil(lock, end)) {
    }
}

bool IsChangingClients(DWORD threadId) noexcept {
    const ScopedLock guard(lock);
    return threadId != 0 && changingThread == threadId;
}

}  // namespace bridge
