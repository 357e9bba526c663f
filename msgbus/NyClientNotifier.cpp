#include "msgbus/NyClientNotifier.h"

#include <memory>
#include <mutex>
#include <new>

#include "agent/ny_agent.h"
#include "dispatcher/DispatcherLog.h"
#include "msgbus/NyClient.h"

namespace {

bool IsOwnThread(const NyClientNotifier& notifier) noexcept {
    return notifier.threadId.load() == ::GetCurrentThreadId();
}

void CloseAndClear(HANDLE& handle) noexcept {
    if (handle != nullptr) {
        ::CloseHandle(handle);
        handle = nullptr;
    }
}

void Free(NyClientNotifier* notifier) noexcept {
    CloseAndClear(notifier->changeEvent);
    CloseAndClear(notifier->stopEvent);
    CloseAndClear(notifier->thread);
    delete notifier;
}

// Tells who was promised the thread's last call. From here on the notifier may be gone.
void SayLast(NyClientNotifier& notifier) noexcept {
    void (*last)(void*) = nullptr;
    void* userData = nullptr;
    {
        const std::lock_guard guard(notifier.endLock);
        notifier.hasEnded = true;
        last = notifier.last;
        userData = notifier.lastUserData;
    }
    if (last != nullptr) {
        last(userData);
    }
}

// The thread holds this library: a module that unloads it without leaving first must not take the code away from under
// the thread.
DWORD WINAPI RunThread(void* parameter) {
    NyClientNotifier& notifier = *static_cast<NyClientNotifier*>(parameter);
    HMODULE const library = notifier.library;
    notifier.threadId = ::GetCurrentThreadId();
    NotifierWatch(notifier);
    SayLast(notifier);
    if (library != nullptr) {
        ::FreeLibraryAndExitThread(library, 0);
    }
    return 0;
}

HMODULE HoldThisLibrary() noexcept {
    HMODULE library = nullptr;
    ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const char*>(&RunThread), &library);
    return library;
}

bool CreateWatchingThread(NyClientNotifier& notifier) noexcept {
    notifier.library = HoldThisLibrary();
    // Before the thread exists: it may end, and say so, before CreateThread returns.
    notifier.exitRequested = 0;
    notifier.running = 1;
    notifier.thread = ::CreateThread(nullptr, 0, RunThread, &notifier, 0, nullptr);
    if (notifier.thread != nullptr) {
        return true;
    }
    notifier.running = 0;
    if (notifier.library != nullptr) {
        ::FreeLibrary(notifier.library);
    }
    return false;
}

}  // namespace

int32_t NotifierCreate(NyClient* client, NyClientNotifier** out) noexcept {
    if (client == nullptr || out == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    auto* notifier = new (std::nothrow) NyClientNotifier;
    if (notifier == nullptr) {
        return NY_OUT_OF_MEMORY;
    }
    notifier->client = client;
    notifier->stopEvent = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    notifier->changeEvent = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (notifier->stopEvent == nullptr || notifier->changeEvent == nullptr) {
        Free(notifier);
        return NY_UNEXPECTED;
    }
    *out = notifier;
    return NY_OK;
}

int32_t NotifierDestroy(NyClientNotifier* notifier) noexcept {
    if (notifier == nullptr) {
        return NY_OK;
    }
    const auto freeLate = [](void* late) { Free(static_cast<NyClientNotifier*>(late)); };
    if (!NotifierHandOver(notifier, freeLate, notifier)) {
        Free(notifier);
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
    if (notifier->running.load() == 0) {
        return NY_OK;
    }
    notifier->exitRequested = 1;
    // Either event ends the thread's wait.
    if (::SetEvent(notifier->stopEvent) == FALSE) {
        ::SetEvent(notifier->changeEvent);
    }
    // On its own thread the wait could only time out.
    const DWORD timeout = IsOwnThread(*notifier) ? 0 : notifier->stopTimeout;
    const DWORD result = ::WaitForSingleObject(notifier->thread, timeout);
    if (result == WAIT_OBJECT_0) {
        NyClientLog(notifier->client, SeverityProgress, nyClientModule,
                    "ny client notifier thread stopped successfully.");
        CloseAndClear(notifier->thread);
        return NY_OK;
    }
    NyClientLog(notifier->client, SeverityFailure, nyClientModule,
                result == WAIT_TIMEOUT ? "failed to stop ny client notifier thread."
                                       : "unknown error to stop ny client notifier thread.");
    return notifier->running.load() != 0 ? NY_UNEXPECTED : NY_OK;
}

bool NotifierHasEnded(NyClientNotifier* notifier) noexcept {
    if (notifier->thread == nullptr) {
        return true;
    }
    if (IsOwnThread(*notifier)) {
        const std::lock_guard guard(notifier->endLock);
        return notifier->hasEnded;
    }
    // A thread that has left its loop is about to end; one that has not was waited for by NotifierStop.
    const DWORD timeout = notifier->running.load() != 0 ? 0 : notifier->stopTimeout;
    return ::WaitForSingleObject(notifier->thread, timeout) == WAIT_OBJECT_0;
}

bool NotifierHandOver(NyClientNotifier* notifier, void (*last)(void* userData), void* userData) noexcept {
    if (notifier->thread == nullptr) {
        return false;
    }
    {
        const std::lock_guard guard(notifier->endLock);
        if (!notifier->hasEnded) {
            notifier->last = last;
            notifier->lastUserData = userData;
            return true;
        }
    }
    // Past its last look at the notifier, or a few instructions before it.
    if (!IsOwnThread(*notifier)) {
        ::WaitForSingleObject(notifier->thread, notifier->stopTimeout);
    }
    return false;
}
