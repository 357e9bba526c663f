// The agent client context: the bridge's handle on the management agent, with the operations on it.
//
// All operations answer NY_OK or a code; none throws. Registering, starting and stopping are called from the bridge
// instance, on a module's thread or on the watcher's; the log function on any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "agent/ny_agent.h"
#include "base/Attributes.h"
#include "base/Mutex.h"
#include "dispatcher/DispatcherLog.h"
#include "msgbus/client/ClientChanges.h"

struct VsMsgbusClientRecord;

namespace bridge {

class AgentSession;
struct Dispatcher;
struct NyClient;
struct NyClientNotifier;

// States that the watcher reports and the point product is told.
enum NyClientState : uint32_t { NyClientStateStopped = 0, NyClientStateStarted = 1 };

using NyClientStateHandler = int32_t (*)(NyClient* client, uint32_t state, void* userData);
using NyClientNotification = void (*)(NyClient* client, uint32_t state, void* userData);

// Shared by the threads inside it: one that changes it, its watcher, and one that writes a log line of the agent's.
struct NyClient : std::enable_shared_from_this<NyClient> {
    Dispatcher* dispatcher = nullptr;  // null until loaded
    std::atomic<ny_client_t*> clientHandler = nullptr;
    std::atomic<ny_msgbus_t*> msgbus = nullptr;  // borrowed from the handler
    ny_logger_t* logger = nullptr;               // while it is null, log lines go to the log callback
    uint32_t threadOption = 0;
    std::string productId;
    NyClientStateHandler stateHandler = nullptr;
    std::atomic<uint32_t> started = 0;   // 1 while the client handler runs
    std::atomic<uint32_t> notified = 0;  // the state last reported to the point product
    std::atomic<NyClientNotification> notification = nullptr;
    std::atomic<void*> notificationUserData = nullptr;
    // The log callback; set under the lock, before anybody but a late call knows the context. Its owner is that of the
    // context and of what its callbacks lead to, see NyClientOwnedBy.
    LogTarget log;
    std::atomic<NyClientNotifier*> notifier = nullptr;  // null when not registered
    ny_passphrase_callback_t passphraseCallback = nullptr;
    void* passphraseUserData = nullptr;

    std::atomic<bool> isReleased = false;
    std::atomic<bool> isWatcherLate = false;  // it did not end in time: it was waited for already
    PendingChanges pending;

    Mutex lock;  // also for taking a share of the notifier
    std::shared_ptr<AgentSession> session GUARDED_BY(lock);
};

// Creates a context for a product id, with the dispatcher loaded, and stores it in the record's first field.
// NY_INVALID_ARGUMENT for null; NY_OUT_OF_MEMORY; the dispatcher's code.
int32_t NyClientCreate(const char* productId, VsMsgbusClientRecord* record) noexcept;

// From now on the threads inside the context share `owner`, in place of the context alone. To be called before other
// code knows the context. The owner then releases it. Raises std::bad_alloc.
void NyClientOwnedBy(NyClient& client, const std::shared_ptr<void>& owner);

// Stops the watcher and lets go of client handler, dispatcher and context: at once, or when the change of a client that
// is under way has ended. The last thread inside frees the context. NY_INVALID_ARGUMENT for null, else NY_OK.
int32_t NyClientRelease(NyClient* client) noexcept;

// Where this client's and the dispatcher's log lines go. Of the dispatcher's, a callback that drops lines less severe
// than `leastSevere` need not be given those. NY_INVALID_ARGUMENT for a null client, else NY_OK.
int32_t NyClientSetLogCallback(NyClient* client, LogLineSink callback, void* userData,
                               LogSeverity leastSevere = SeverityDetail) noexcept;

// Creates and starts the install watcher: from now on `callback` is told when the agent comes and goes; the first time
// within this call, when the agent is there. NY_INVALID_ARGUMENT when client or callback is null; NY_OK at once when a
// watcher exists; the code of the watcher's creation.
int32_t NyClientRegisterNotifications(NyClient* client, NyClientNotification callback, void* userData) noexcept;

// Stops the watcher, lets go of it, and tells the callback of the stop when it was told of a start: at once, or when
// the change of a client that is under way has ended. NY_INVALID_ARGUMENT for null, else NY_OK, also without a watcher.
int32_t NyClientUnregisterNotifications(NyClient* client) noexcept;

// Creates and starts the agent's client handler. NY_OK, also when it is started already; the first failing call's code.
int32_t NyClientStart(NyClient* client) noexcept;
// Stops the client handler; not started is no failure.
int32_t NyClientStop(NyClient* client) noexcept;

// The state handler: passes a state that is new on to the callback; after a stop lets go of handler and libraries. At
// once, or when the change of a client that is under way has ended.
int32_t NyClientNotifyState(NyClient* client, uint32_t state, void* userData) noexcept;

// Formats one line, cut at 2,047 characters, and hands it to the log callback if there is one, else to the agent's
// logger if there is one. Returns what that returned; NY_OK when there is neither.
LIKE_PRINTF(4, 5)
int32_t NyClientLog(NyClient* client, uint32_t severity, const char* module, const char* format, ...) noexcept;

// The log callback that the agent is given for its client, with the context as user data. Answers NY_UNEXPECTED to a
// line that comes when the context is gone.
int32_t NyClientAgentLog(uint32_t severity, const char* module, const char* message, void* userData) noexcept;

// The module name of every line of the client and its watcher.
inline constexpr char nyClientModule[] = "ny_client";

// One function for each change of ClientChanges.h, called by the thread that makes the changes.
void NyClientMakeStop(NyClient& client) noexcept;
void NyClientMakeStart(NyClient& client, uint32_t state) noexcept;
void NyClientMakeUnregister(NyClient& client) noexcept;
void NyClientMakeRelease(NyClient& client) noexcept;

}  // namespace bridge
