// The agent client context: the bridge's handle on the management agent, with the operations on it.
//
// All operations answer NY_OK or a code; none throws. Registering, starting and stopping are called from the bridge
// instance, on a module's thread or on the watcher's; the log function on any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "agent/ny_agent.h"
#include "base/CallGate.h"
#include "dispatcher/DispatcherLog.h"

struct Dispatcher;
struct NyClient;
struct NyClientNotifier;
struct VsMsgbusClientRecord;

// States that the watcher reports and the point product is told.
enum NyClientState : uint32_t { NyClientStateStopped = 0, NyClientStateStarted = 1 };

using NyClientStateHandler = int32_t (*)(NyClient* client, uint32_t state, void* userData);
using NyClientNotification = void (*)(NyClient* client, uint32_t state, void* userData);

struct NyClient {
    Dispatcher* dispatcher = nullptr;  // null until loaded
    std::atomic<ny_client_t*> clientHandler = nullptr;
    std::atomic<ny_msgbus_t*> msgbus = nullptr;  // borrowed from the handler
    ny_logger_t* logger = nullptr;               // while it is null, log lines go to the log callback
    uint32_t threadOption = 0;
    std::string productId;
    NyClientStateHandler stateHandler = nullptr;
    std::atomic<uint32_t> started = 0;   // 1 while the client handler runs
    std::atomic<uint32_t> notified = 0;  // the state last reported to the point product
    NyClientNotification notification = nullptr;
    void* notificationUserData = nullptr;
    LogLineSink logCallback = nullptr;
    void* logUserData = nullptr;
    LogSeverity leastSevereLog = SeverityDetail;        // of the dispatcher's lines
    std::atomic<NyClientNotifier*> notifier = nullptr;  // null when not registered
    ny_passphrase_callback_t passphraseCallback = nullptr;
    void* passphraseUserData = nullptr;
    bool isHandlerLost = false;  // the agent refused to let go of a handler: it may still call back
    NyClient* nextKept = nullptr;
    CallGate agentLogGate;  // the agent's log lines; closed once they must lead nowhere
};

// Creates a context for a product id, with the dispatcher loaded, and stores it in the record's first field.
// NY_INVALID_ARGUMENT for null; NY_OUT_OF_MEMORY; the dispatcher's code.
int32_t NyClientCreate(const char* productId, VsMsgbusClientRecord* record) noexcept;

// Stops the watcher, releases the client handler and the dispatcher and frees the context. A context whose watcher does
// not end in time is freed by the watcher's thread. NY_INVALID_ARGUMENT for null, else NY_OK.
int32_t NyClientRelease(NyClient* client) noexcept;

// Where this client's and the dispatcher's log lines go. Of the dispatcher's, a callback that drops lines less severe
// than `leastSevere` need not be given those. NY_INVALID_ARGUMENT for a null client, else NY_OK.
int32_t NyClientSetLogCallback(NyClient* client, LogLineSink callback, void* userData,
                               LogSeverity leastSevere = SeverityDetail) noexcept;

// Creates and starts the install watcher: from now on `callback` is told when the agent comes and goes; the first time
// within this call, when the agent is there. NY_INVALID_ARGUMENT when client or callback is null; NY_OK at once when a
// watcher exists; the code of the watcher's creation.
int32_t NyClientRegisterNotifications(NyClient* client, NyClientNotification callback, void* userData) noexcept;

// Stops and destroys the watcher and tells the callback of the stop when it was told of a start. NY_INVALID_ARGUMENT
// for null; NY_OK, also without a watcher; NY_UNEXPECTED when the watcher's thread did not end in time: then nothing is
// destroyed and nobody told, see NyClientHandOver.
int32_t NyClientUnregisterNotifications(NyClient* client) noexcept;

// Leaves what remains to be done to the watcher's thread, which calls `last(userData)` when it ends. False when there
// is no such thread any more: the caller does it then.
bool NyClientHandOver(NyClient* client, void (*last)(void* userData), void* userData) noexcept;

// Creates and starts the agent's client handler. NY_OK, also when it is started already; the first failing call's code.
int32_t NyClientStart(NyClient* client) noexcept;
// Stops the client handler; not started is no failure.
int32_t NyClientStop(NyClient* client) noexcept;

// The state handler: passes a state that is new on to the callback; after a stop lets go of handler and libraries.
int32_t NyClientNotifyState(NyClient* client, uint32_t state, void* userData) noexcept;

// Formats one line, cut at 2,047 characters, and hands it to the log callback if there is one, else to the agent's
// logger if there is one. Returns what that returned, NY_OK for a line that nobody takes.
[[gnu::format(printf, 4, 5)]] int32_t NyClientLog(NyClient* client, uint32_t severity, const char* module,
                                                  const char* format, ...) noexcept;

// What the agent is given as its client's log callback, with the context as user data.
int32_t NyClientAgentLog(uint32_t severity, const char* module, const char* message, void* userData) noexcept;

// The module name of every line of the client and its watcher.
inline constexpr char nyClientModule[] = "ny_client";
