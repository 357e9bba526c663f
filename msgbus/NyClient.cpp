#include "msgbus/NyClient.h"

#include <memory>
#include <new>

#include "base/Boundary.h"
#include "dispatcher/Dispatcher.h"
#include "dispatcher/groups/ClientHandlerGroup.h"
#include "dispatcher/groups/MsgbusGroup.h"
#include "msgbus/AgentUse.h"
#include "msgbus/NyClientNotifier.h"
#include "msgbus/VsMsgbusClientRecord.h"

namespace {

// A dispatcher loaded anew gets the log callback too, so that its lines go on after an upgrade.
int32_t LoadDispatcher(NyClient& client) noexcept {
    const int32_t result = DispatcherCreate(nullptr, &client.dispatcher);
    if (result == NY_OK) {
        DispatcherSetLogSink(client.dispatcher, client.logCallback, client.logUserData, client.leastSevereLog);
    }
    return result;
}

void UnloadDispatcher(NyClient& client) noexcept {
    DispatcherRelease(client.dispatcher);
    client.dispatcher = nullptr;
}

void ReleaseHandler(NyClient& client) noexcept {
    ny_client_t* const handler = client.clientHandler.exchange(nullptr);
    if (handler == nullptr) {
        return;
    }
    CloseAgent(handler);
    const int32_t result = agent::ny_client_handler_release(handler);
    client.isHandlerLost = client.isHandlerLost || (result != NY_OK && result != NY_FUNCTION_MISSING);
}

// What is kept stays within reach, so that it is no leak to those who look for leaks.
std::atomic<NyClient*> keptClients = nullptr;

void KeepForGood(NyClient* client) noexcept {
    client->nextKept = keptClients.load();
    while (!keptClients.compare_exchange_weak(client->nextKept, client)) {
    }
}

void LetGoOfAgent(NyClient& client) noexcept {
    ReleaseHandler(client);
    client.msgbus = nullptr;
    client.logger = nullptr;
    UnloadDispatcher(client);
}

// What the agent answers to the settings does not matter: a client that lacks one still works.
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

void TellPointProduct(NyClient& client, uint32_t state, void* userData) noexcept {
    if (client.notification != nullptr) {
        client.notification(&client, state, userData);
    }
}

int32_t StartHandler(NyClient& client) noexcept {
    ny_client_t* handler = nullptr;
    int32_t result = agent::ny_client_handler_create(client.productId.c_str(), &handler);
    if (result != NY_OK) {
        return result;
    }
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
    return NY_OK;
}

}  // namespace

int32_t NyClientCreate(const char* productId, VsMsgbusClientRecord* record) noexcept {
    if (productId == nullptr || record == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        auto client = std::make_unique<NyClient>();
        client->productId = productId;
        const int32_t result = LoadDispatcher(*client);
        if (result == NY_OK) {
            record->client = client.release();
        }
        return result;
    });
}

int32_t NyClientRelease(NyClient* client) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    // The watcher first: its thread uses everything else.
    if (NyClientNotifier* const notifier = client->notifier.load()) {
        NotifierStop(notifier);
        const auto releaseAgain = [](void* late) { NyClientRelease(static_cast<NyClient*>(late)); };
        if (!NotifierHasEnded(notifier) && NotifierHandOver(notifier, releaseAgain, client)) {
            return NY_OK;
        }
        client->notifier = nullptr;
        NotifierDestroy(notifier);
    }
    LetGoOfAgent(*client);
    if (client->isHandlerLost) {
        // The agent may still hand its log lines to this context: it stays for good, and leads nowhere.
        Guarded([client] {
            client->agentLogGate.Close();
            client->agentLogGate.WaitForOthers();
        });
        KeepForGood(client);
        return NY_OK;
    }
    delete client;
    return NY_OK;
}

int32_t NyClientSetLogCallback(NyClient* client, LogLineSink callback, void* userData,
                               LogSeverity leastSevere) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    client->logCallback = callback;
    client->logUserData = userData;
    client->leastSevereLog = leastSevere;
    DispatcherSetLogSink(client->dispatcher, callback, userData, leastSevere);
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
    NyClientNotifier* none = nullptr;
    if (!client->notifier.compare_exchange_strong(none, created)) {
        NotifierDestroy(created);
        return NY_OK;
    }
    NyClientLog(client, SeverityProgress, nyClientModule, "registering for ny client notifications.");
    client->stateHandler = NyClientNotifyState;
    client->notification = callback;
    client->notificationUserData = userData;
    NotifierStart(created);
    return NY_OK;
}

int32_t NyClientUnregisterNotifications(NyClient* client) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    NyClientNotifier* const notifier = client->notifier.load();
    if (notifier == nullptr) {
        return NY_OK;
    }
    NyClientLog(client, SeverityProgress, nyClientModule, "unregistering for ny client notifications.");
    NotifierStop(notifier);
    if (!NotifierHasEnded(notifier)) {
        return NY_UNEXPECTED;
    }
    client->notifier = nullptr;
    NotifierDestroy(notifier);
    if (client->notification != nullptr) {
        client->stateHandler(client, NyClientStateStopped, client->notificationUserData);
    }
    client->notified = NyClientStateStopped;
    client->notification = nullptr;
    client->notificationUserData = nullptr;
    return NY_OK;
}

bool NyClientHandOver(NyClient* client, void (*last)(void* userData), void* userData) noexcept {
    NyClientNotifier* const notifier = client != nullptr ? client->notifier.load() : nullptr;
    return notifier != nullptr && NotifierHandOver(notifier, last, userData);
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
    int32_t result = StartHandler(*client);
    if (result == NY_OK && !OpenAgent(client->clientHandler.load())) {
        agent::ny_client_handler_stop(client->clientHandler.load());
        ReleaseHandler(*client);
        client->msgbus = nullptr;
        result = NY_OUT_OF_MEMORY;
    }
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

int32_t NyClientNotifyState(NyClient* client, uint32_t state, void* userData) noexcept {
    if (client == nullptr || state == client->notified.load()) {
        return NY_OK;
    }
    if (state != NyClientStateStopped) {
        if (client->dispatcher == nullptr && LoadDispatcher(*client) != NY_OK) {
            NyClientLog(client, SeverityFailure, nyClientModule, "failed to initialize dispatcher.");
            return NY_OK;
        }
        NyClientLog(client, SeverityProgress, nyClientModule, "notifying point product to start client.");
        TellPointProduct(*client, state, userData);
        client->notified = NyClientStateStarted;
        return NY_OK;
    }
    NyClientLog(client, SeverityProgress, nyClientModule, "notifying point product to stop client.");
    if (ny_msgbus_t* const bus = client->msgbus.load()) {
        agent::ny_msgbus_disable_watcher(bus);
    }
    TellPointProduct(*client, state, userData);
    LetGoOfAgent(*client);
    client->notified = NyClientStateStopped;
    return NY_OK;
}
