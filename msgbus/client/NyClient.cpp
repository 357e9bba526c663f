#include "msgbus/client/NyClient.h"

#include "base/Boundary.h"
#include "dispatcher/AgentCalls.h"
#include "dispatcher/Dispatcher.h"
#include "dispatcher/groups/ClientHandlerGroup.h"
#include "dispatcher/groups/MsgbusGroup.h"
#include "msgbus/client/AgentUse.h"
#include "msgbus/client/NyClientNotifier.h"
#include "msgbus/client/VsMsgbusClientRecord.h"

namespace bridge {

namespace {

// A dispatcher loaded anew gets the log callback too, so that its lines go on after an upgrade.
int32_t LoadDispatcher(NyClient& client) noexcept {
    const int32_t result = DispatcherCreate(nullptr, &client.dispatcher);
    if (result == NY_OK) {
        DispatcherSetLogSink(client.dispatcher, client.log);
    }
    return result;
}

std::shared_ptr<AgentSession> ExchangeSession(NyClient& client, std::shared_ptr<AgentSession> session) noexcept {
    const ScopedLock guard(client.lock);
    client.session.swap(session);
    return session;
}

// The last thread inside the agent releases the handler: this one, when there is no other.
void ReleaseHandler(NyClient& client) noexcept {
    if (ny_client_t* const handler = client.clientHandler.exchange(nullptr)) {
        CloseAgent(handler);
        ForgetAgentCalls(handler);
    }
    ExchangeSession(client, nullptr);
}

void ReleaseHandlerAndDispatcher(NyClient& client) noexcept {
    ReleaseHandler(client);
    client.msgbus = nullptr;
    client.logger = nullptr;
    DispatcherRelease(client.dispatcher);
    client.dispatcher = nullptr;
}

// The agent's answers to the settings are not looked at: a client that lacks one still works.
void ConfigureHandler(NyClient& client, ny_client_t* handler) noexcept {
    if (client.msgbus.load() != nullptr) {
        agent::ny_client_handler_set_msgbus(handler, client.msgbus.load());
    }
    agent::ny_client_handler_set_msgbus_passphrase_callback(handler, client.passphraseCallback,
                                                            client.passphraseUserData);
    agent::ny_client_handler_set_thread_option(handler, client.threadOption);
    if (client.logger != nullptr) {
        agent::ny_client_handler_set_logger(handler, client.logger);
    } else {
        agent::ny_client_handler_set_logger_callback(handler, NyClientAgentLog, &client);
    }
}

void TellPointProduct(NyClient& client, uint32_t state) noexcept {
    if (const NyClientNotification notification = client.notification.load()) {
        notification(&client, state, client.notificationUserData.load());
    }
}

// The session comes first: the agent's log lines share it from the handler's creation on.
int32_t StartHandler(NyClient& client) noexcept {
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        const std::shared_ptr<AgentSession> session = AgentSession::Make();
        ExchangeSession(client, session);
        ny_client_t* handler = nullptr;
        int32_t result = agent::ny_client_handler_create(client.productId.c_str(), &handler);
        if (result != NY_OK) {
            ExchangeSession(client, nullptr);
            return result;
        }
        session->Own(handler, agent::ny_client_handler_release.Find());
        client.clientHandler = handler;
        ConfigureHandler(client, handler);
        result = agent::ny_client_handler_start(handler);
        if (result != NY_OK) {
            ReleaseHandler(client);
            return result;
        }
        if (client.msgbus.load() == nullptr) {
            ny_msgbus_t* bus = nullptr;
            agent::ny_client_handler_get_msgbus(handler, &bus);
            client.msgbus = bus;
        }
        OpenAgent(session);
        return NY_OK;
    });
}

// A share of the client's notifier, null when it has none. To be given back with NotifierDestroy.
NyClientNotifier* ShareNotifier(NyClient& client) noexcept {
    const ScopedLock guard(client.lock);
    NyClientNotifier* const notifier = client.notifier.load();
    return notifier != nullptr ? NotifierShare(notifier) : nullptr;
}

// Ends the watcher. It may still be busy for a while when it does not end in time; its last act is then to let go of
// itself.
void StopWatcher(NyClient& client) noexcept {
    NyClientNotifier* const notifier = ShareNotifier(client);
    if (notifier == nullptr) {
        return;
    }
    client.isWatcherLate = NotifierStop(notifier) != NY_OK;
    NyClientNotifier* current = notifier;
    {
        const ScopedLock guard(client.lock);
        if (!client.notifier.compare_exchange_strong(current, nullptr)) {
            current = nullptr;
        }
    }
    NotifierDestroy(current);
    NotifierDestroy(notifier);
}

void WaitUnlessLate(const NyClient& client) noexcept {
    if (!client.isWatcherLate.load()) {
        WaitForChangesOf(client);
    }
}

// Whether the calling thread is the client's watcher.
bool IsWatcher(NyClient& client) noexcept {
    const ScopedLock guard(client.lock);
    const NyClientNotifier* const notifier = client.notifier.load();
    return notifier != nullptr && notifier->threadId.load() == ::GetCurrentThreadId();
}

}  // namespace

int32_t NyClientCreate(const char* productId, VsMsgbusClientRecord* record) noexcept {
    if (productId == nullptr || record == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        const auto client = std::make_shared<NyClient>();
        client->productId = productId;
        AdmitAgentCalls(CallData<NyClient>(client.get()), {}, client, client.get());
        const int32_t result = LoadDispatcher(*client);
        if (result == NY_OK) {
            record->client = client.get();
        } else {
            ForgetAgentCalls(client.get());
        }
        return result;
    });
}

void NyClientOwnedBy(NyClient& client, const std::shared_ptr<void>& owner) {
    AdmitAgentCalls(CallData<NyClient>(&client), {}, owner, &client);
    client.log.owner = owner;
    client.log.hasOwner = true;
    DispatcherSetLogSink(client.dispatcher, client.log);
}

int32_t NyClientRelease(NyClient* client) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    const std::shared_ptr<NyClient> share = client->weak_from_this().lock();
    StopWatcher(*client);
    if (share != nullptr && !client->isReleased.load()) {
        ChangeClient(*client, ClientChange::Release);
        WaitUnlessLate(*client);
    }
    return NY_OK;
}

int32_t NyClientSetLogCallback(NyClient* client, LogLineSink callback, void* userData,
                               LogSeverity leastSevere) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    {
        const ScopedLock guard(client->lock);
        client->log.sink = callback;
        client->log.userData = userData;
        client->log.leastSevere = leastSevere;
    }
    DispatcherSetLogSink(client->dispatcher, client->log);
    return NY_OK;
}

int32_t NyClientRegisterNotifications(NyClient* client, NyClientNotification callback, void* userData) noexcept {
    if (client == nullptr || callback == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    if (client->notifier.load() != nullptr) {
        return NY_OK;
    }
    NyClientNotifier* created = nullptr;
    const int32_t result = NotifierCreate(client, &created);
    if (result != NY_OK) {
        return result;
    }
    // Of its own: the client's may be given back while the watcher starts.
    NyClientNotifier* const share = NotifierShare(created);
    NyClientNotifier* none = nullptr;
    if (client->notifier.compare_exchange_strong(none, created)) {
        NyClientLog(client, SeverityProgress, nyClientModule, "registering for ny client notifications.");
        client->stateHandler = NyClientNotifyState;
        client->notificationUserData = userData;
        client->notification = callback;
        NotifierStart(created);
        WaitForChangesOf(*client);
    } else {
        NotifierDestroy(created);
    }
    NotifierDestroy(share);
    return NY_OK;
}

int32_t NyClientUnregisterNotifications(NyClient* client) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    if (client->notifier.load() == nullptr) {
        return NY_OK;
    }
    NyClientLog(client, SeverityProgress, nyClientModule, "unregistering for ny client notifications.");
    StopWatcher(*client);
    ChangeClient(*client, ClientChange::Unregister);
    WaitUnlessLate(*client);
    return NY_OK;
}

int32_t NyClientStart(NyClient* client) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    if (client->started.load() != 0) {
        NyClientLog(client, SeverityProgress, nyClientModule, "ny client already started.");
        return NY_OK;
    }
    if (client->dispatcher == nullptr) {
        const int32_t loaded = LoadDispatcher(*client);
        if (client->dispatcher == nullptr) {
            return loaded;
        }
    }
    ReleaseHandler(*client);
    const int32_t result = StartHandler(*client);
    if (result != NY_OK) {
        NyClientLog(client, SeverityFailure, nyClientModule, "falied to start ny client.");
        return result;
    }
    client->started = 1;
    NyClientLog(client, SeverityProgress, nyClientModule, "ny client is started.");
    return NY_OK;
}

int32_t NyClientStop(NyClient* client) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    if (client->started.load() != 1) {
        // At failure severity, unlike its counterpart in NyClientStart; kept on purpose.
        NyClientLog(client, SeverityFailure, nyClientModule, "ny client already stopped.");
        return NY_OK;
    }
    NyClientLog(client, SeverityProgress, nyClientModule, "stopping ny client.");
    client->started = 0;
    CloseAgent(client->clientHandler.load());
    return agent::ny_client_handler_stop(client->clientHandler.load());
}

int32_t NyClientNotifyState(NyClient* client, uint32_t state, void* /*userData*/) noexcept {
    if (client == nullptr || client->isReleased.load()) {
        return NY_OK;
    }
    ChangeClient(*client, state != NyClientStateStopped ? ClientChange::Start : ClientChange::Stop, state,
                 IsWatcher(*client));
    return NY_OK;
}

void NyClientMakeStart(NyClient& client, uint32_t state) noexcept {
    if (client.isReleased.load() || state == client.notified.load()) {
        return;
    }
    if (client.dispatcher == nullptr && LoadDispatcher(client) != NY_OK) {
        NyClientLog(&client, SeverityFailure, nyClientModule, "failed to initialize dispatcher.");
        return;
    }
    NyClientLog(&client, SeverityProgress, nyClientModule, "notifying point product to start client.");
    TellPointProduct(client, state);
    client.notified = NyClientStateStarted;
}

void NyClientMakeStop(NyClient& client) noexcept {
    if (client.notified.load() == NyClientStateStopped) {
        return;
    }
    NyClientLog(&client, SeverityProgress, nyClientModule, "notifying point product to stop client.");
    if (ny_msgbus_t* const bus = client.msgbus.load()) {
        agent::ny_msgbus_disable_watcher(bus);
    }
    TellPointProduct(client, NyClientStateStopped);
    ReleaseHandlerAndDispatcher(client);
    client.notified = NyClientStateStopped;
}

void NyClientMakeUnregister(NyClient& client) noexcept {
    if (client.notification.load() != nullptr) {
        NyClientMakeStop(client);
    }
    client.notified = NyClientStateStopped;
    client.notification = nullptr;
    client.notificationUserData = nullptr;
}

void NyClientMakeRelease(NyClient& client) noexcept {
    if (!client.isReleased.exchange(true)) {
        ReleaseHandlerAndDispatcher(client);
        ForgetAgentCalls(&client);
    }
}

}  // namespace bridge
