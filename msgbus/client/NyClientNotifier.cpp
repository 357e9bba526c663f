#include "msgbus/client/NyClientNotifier.h"

#include <new>
#include <utility>

#include "agent/ny_agent.h"
#include "dispatcher/AgentCalls.h"
#include "dispatcher/DispatcherLog.h"
#include "msgbus/client/ClientChanges.h"
#include "msgbus/client/NyClient.h"

namespace bridge {

namespace {

DWORD WINAPI RunThread(void* parameter) {
    auto* const notifier = static_cast<NyClientNotifier*>(parameter);
    notifier->threadId = ::GetCurrentThreadId();
    NotifierWatch(*notifier);
    // Last, because the client may end with it.
    const std::shared_ptr<void> client = std::move(notifier->clientShare);
    NotifierDestroy(notifier);
    return 0;
}

bool CreateWatchingThread(NyClientNotifier& notifier) noexcept {
    notifier.clientShare = FindAgentCalls(CallData<NyClient>(notifier.client), {});
    // Before the thread exists: it may end, and say so, before CreateThread returns.
    notifier.running = 1;
    notifier.thread.reset(::CreateThread(nullptr, 0, RunThread, NotifierShare(&notifier), 0, nullptr));
    if (notifier.thread != nullptr) {
        return true;
    }
    notifier.running = 0;
    notifier.clientShare.reset();
    NotifierDestroy(&notifier);
    return false;
}

// How long the thread may be waited for.
DWORD StopTimeout(const NyClientNotifier& notifier) noexcept {
    const DWORD thread = notifier.threadId.load();
    const bool isWaste = thread == ::GetCurrentThreadId() || (AgentCall::IsUnderWay() && IsChangingClients(thread));
    return isWaste ? 0 : notifier.stopTimeout;
}

}  // namespace

int32_t NotifierCreate(NyClient* client, NyClientNotifier** out) noexcept {
    if (client == nullptr || out == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    std::unique_ptr<NyClientNotifier> notifier(new (std::nothrow) NyClientNotifier);
    if (notifier == nullptr) {
        return NY_OUT_OF_MEMORY;
    }
    notifier->client = client;
    notifier->stopEvent.reset(::CreateEventA(nullptr, TRUE, FALSE, nullptr));
    notifier->changeEvent.reset(::CreateEventA(nullptr, TRUE, FALSE, nullptr));
    if (notifier->stopEvent == nullptr || notifier->changeEvent == nullptr) {
        return NY_UNEXPECTED;
    }
    *out = notifier.release();
    return NY_OK;
}

NyClientNotifier* NotifierShare(NyClientNotifier* notifier) noexcept {
    notifier->shares.fetch_add(1);
    return notifier;
}

int32_t NotifierDestroy(NyClientNotifier* notifier) noexcept {
    if (notifier != nullptr && notifier->shares.fetch_sub(1) == 1) {
        delete notifier;
    }
    return NY_OK;
}

int32_t NotifierStart(NyClientNotifier* notifier) noexcept {
    if (notifier == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    if (notifier->running.load() != 0) {
        NyClientLog(notifier->client, SeverityProgress, nyClientModule,
                    "ny client notifier thread is already running.");
        return NY_OK;
    }
    NotifierCheckAgent(notifier);
    if (notifier->exitRequested.load() != 0) {
        return NY_UNEXPECTED;
    }
    if (!CreateWatchingThread(*notifier)) {
        NyClientLog(notifier->client, SeverityFailure, nyClientModule, "failed to start ny client notifier.");
        return NY_UNEXPECTED;
    }
    NyClientLog(notifier->client, SeverityProgress, nyClientModule, "ny client notifier thread started.");
    return NY_OK;
}

int32_t NotifierStop(NyClientNotifier* notifier) noexcept {
    if (notifier == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    notifier->exitRequested = 1;
    if (notifier->running.load() == 0) {
        return NY_OK;
    }
    // Either event ends the thread's wait.
    if (::SetEvent(notifier->stopEvent.get()) == FALSE) {
        ::SetEvent(notifier->changeEvent.get());
    }
    const DWORD result = ::WaitForSingleObject(notifier->thread.get(), StopTimeout(*notifier));
    if (result == WAIT_OBJECT_0) {
        NyClientLog(notifier->client, SeverityProgress, nyClientModule,
                    "ny client notifier thread stopped successfully.");
        notifier->thread.reset();
        return NY_OK;
    }
    NyClientLog(notifier->client, SeverityFailure, nyClientModule,
                result == WAIT_TIMEOUT ? "failed to stop ny client notifier thread."
                                       : "unknown error to stop ny client notifier thread.");
    return notifier->running.load() != 0 ? NY_UNEXPECTED : NY_OK;
}

}  // namespace bridge
