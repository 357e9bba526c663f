// The install watcher: a thread that watches the agent's registry key and tells the client, through its state handler,
// when the agent becomes available and when it goes away or changes.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <memory>

#include "base/UniqueHandle.h"
#include "msgbus/client/AgentKey.h"

namespace bridge {

struct NyClient;

// How long the watcher waits: for the first change before it reads once more, for a missing key, and to be stopped.
inline constexpr uint32_t notifierWaitMilliseconds = 15000;

struct NyClientNotifier {
    NyClient* client = nullptr;
    UniqueHandle stopEvent;    // manual reset; never reset, a stopped notifier is not started again
    UniqueHandle changeEvent;  // manual reset; signalled by the registry
    UniqueHandle thread;       // null when there is no thread
    std::atomic<uint8_t> running = 0;
    std::atomic<uint8_t> exitRequested = 0;
    uint32_t waitTimeout = notifierWaitMilliseconds;
    AgentVersion version = {};  // last seen; empty when the agent is taken as not installed

    uint32_t pauseTimeout = notifierWaitMilliseconds;  // between two looks for a missing key
    uint32_t stopTimeout = notifierWaitMilliseconds;   // for the thread to end
    std::atomic<DWORD> threadId = 0;
    std::atomic<uint32_t> shares = 1;
    std::shared_ptr<void> clientShare;  // the thread's, of its client
};

// NY_OK with the notifier, without a thread, in `out`; NY_INVALID_ARGUMENT for null; NY_OUT_OF_MEMORY; NY_UNEXPECTED
// when an event cannot be created.
int32_t NotifierCreate(NyClient* client, NyClientNotifier** out) noexcept;

// One more share of the notifier, which is freed with the last one. Its thread has one of its own.
NyClientNotifier* NotifierShare(NyClientNotifier* notifier) noexcept;

// Gives a share back. Null is accepted. NY_OK.
int32_t NotifierDestroy(NyClientNotifier* notifier) noexcept;

// Looks for the agent once, on the calling thread, then starts the watching thread, unless the notifier was stopped
// meanwhile. NY_OK when it runs, also when it ran already; NY_INVALID_ARGUMENT for null; NY_UNEXPECTED when there is no
// thread.
int32_t NotifierStart(NyClientNotifier* notifier) noexcept;

// Asks the thread to end and waits for it, at most 15 seconds; not at all on that thread itself, nor inside a call from
// the agent while the thread makes a change of a client, which may be waiting for that call. From now on the client is
// told nothing that was not begun. NY_OK when it ended or never ran; NY_INVALID_ARGUMENT for null; NY_UNEXPECTED when
// it still runs.
int32_t NotifierStop(NyClientNotifier* notifier) noexcept;

// Looks for the agent: reports state 1 when it is installed. Always NY_OK.
int32_t NotifierCheckAgent(NyClientNotifier* notifier) noexcept;

// The thread's body up to its exit: see NyClientNotifierThread.cpp.
void NotifierWatch(NyClientNotifier& notifier) noexcept;

}  // namespace bridge
