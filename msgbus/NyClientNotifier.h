// The install watcher: a thread that watches the agent's registry key and tells the client, through its state handler,
// when the agent becomes available and when it goes away or changes.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>

#include "base/Mutex.h"
#include "msgbus/AgentKey.h"

struct NyClient;

// How long the watcher waits: for the first change before it reads once more, for a missing key, and to be stopped.
inline constexpr uint32_t notifierWaitMilliseconds = 15000;

struct NyClientNotifier {
    NyClient* client = nullptr;
    HANDLE stopEvent = nullptr;    // manual reset; never reset, a stopped notifier is not started again
    HANDLE changeEvent = nullptr;  // manual reset; signalled by the registry
    HANDLE thread = nullptr;       // null when there is no thread
    std::atomic<uint8_t> running = 0;
    std::atomic<uint8_t> exitRequested = 0;
    uint32_t waitTimeout = notifierWaitMilliseconds;
    AgentVersion version = {};  // last seen; empty when the agent is taken as not installed

    uint32_t pauseTimeout = notifierWaitMilliseconds;  // between two looks for a missing key
    uint32_t stopTimeout = notifierWaitMilliseconds;   // for the thread to end
    std::atomic<DWORD> threadId = 0;
    HMODULE library = nullptr;  // this code, held for as long as the thread runs

    Mutex endLock;  // guards the following
    bool hasEnded = false;
    void (*last)(void* userData) = nullptr;
    void* lastUserData = nullptr;
};

// NY_OK with the notifier, without a thread, in `out`; NY_INVALID_ARGUMENT for null; NY_OUT_OF_MEMORY; NY_UNEXPECTED
// when an event cannot be created.
int32_t NotifierCreate(NyClient* client, NyClientNotifier** out) noexcept;

// Frees the notifier; one whose thread still runs is freed by that thread when it ends. Null is accepted. NY_OK.
int32_t NotifierDestroy(NyClientNotifier* notifier) noexcept;

// Looks for the agent once, on the calling thread, then starts the watching thread. NY_OK when it runs, also when it
// ran already; NY_INVALID_ARGUMENT for null; NY_UNEXPECTED when the thread could not be created.
int32_t NotifierStart(NyClientNotifier* notifier) noexcept;

// Asks the thread to end and waits for it, at most 15 seconds, or not at all when called on that thread itself. NY_OK
// when it ended or never ran; NY_INVALID_ARGUMENT for null; NY_UNEXPECTED when it still runs.
int32_t NotifierStop(NyClientNotifier* notifier) noexcept;

// Looks for the agent: reports state 1 when it is installed. Always NY_OK.
int32_t NotifierCheckAgent(NyClientNotifier* notifier) noexcept;

// Whether the thread, if there was one, is done with the notifier and its client; to be asked after NotifierStop.
bool NotifierHasEnded(NyClientNotifier* notifier) noexcept;

// Has the thread call `last(userData)` as the last thing it does with this notifier, which `last` may destroy. False,
// and nothing happens, when the thread has ended.
bool NotifierHandOver(NyClientNotifier* notifier, void (*last)(void* userData), void* userData) noexcept;

// The thread's body up to its exit: see NyClientNotifierThread.cpp.
void NotifierWatch(NyClientNotifier& notifier) noexcept;
