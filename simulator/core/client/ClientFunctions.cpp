// The client handler.
#include "simulator/core/client/Client.h"
#include "simulator/core/client/ClientTable.h"
#include "simulator/core/client/OnRegistered.h"
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"

using namespace simulator;

namespace {

ny_client_t* CreateClient(const char* productId) {
    const auto client = std::make_shared<Client>(productId);
    client->ownBus = Handles().Lend<ny_msgbus_t>(std::make_shared<MessageBus>());
    client->Set([&](ClientSettings& settings) { settings.bus = client->ownBus; });
    client->handle = Handles().Own<ny_client_t>(client);
    TheClients().Add(client);
    return client->handle;
}

// The handle stays alive until no callback runs: a callback may use it.
void ReleaseClient(ny_client_t* handle) {
    const auto client = Handles().Get(handle);
    client->EndCallbacks();
    Handles().Release(handle);
    TheClients().Remove(client);
    Handles().EndLoan(client->ownBus);
}

}  // namespace

int32_t ny_core_client_handler_create(const char* productId, ny_client_t** out) {
    return Simulate("ny_client_handler_create", [&] {
        Require(productId != nullptr && out != nullptr);
        *out = CreateClient(productId);
    });
}

int32_t ny_core_client_handler_start(ny_client_t* client) {
    return Simulate("ny_client_handler_start", [&] { Handles().Get(client)->started = true; });
}

int32_t ny_core_client_handler_stop(ny_client_t* client) {
    return Simulate("ny_client_handler_stop", [&] { Handles().Get(client)->started = false; });
}

int32_t ny_core_client_handler_release(ny_client_t* client) {
    return Simulate("ny_client_handler_release", [&] { ReleaseClient(client); });
}

int32_t ny_core_client_handler_set_thread_option(ny_client_t* client, uint32_t) {
    return Simulate("ny_client_handler_set_thread_option", [&] { static_cast<void>(Handles().Get(client)); });
}

int32_t ny_core_client_handler_set_logger(ny_client_t* client, ny_logger_t* logger) {
    return Simulate("ny_client_handler_set_logger", [&] {
        static_cast<void>(Handles().Get(client));
        static_cast<void>(Handles().Get(logger));
    });
}

int32_t ny_core_client_handler_set_logger_callback(ny_client_t* client, ny_log_callback_t callback, void* userData) {
    return Simulate("ny_client_handler_set_logger_callback", [&] {
        const auto target = Handles().Get(client);
        const AgentLockHold hold;
        target->Set([&](ClientSettings& settings) { settings.logCallback = {callback, userData}; });
        if (callback != nullptr) {
            OnRegistered(target, std::make_shared<Registration<LogCallback>>(target->productId,
                                                                             LogCallback{callback, userData}));
        }
    });
}

int32_t ny_core_client_handler_set_msgbus_passphrase_callback(ny_client_t* client, ny_passphrase_callback_t, void*) {
    return Simulate("ny_client_handler_set_msgbus_passphrase_callback",
                    [&] { static_cast<void>(Handles().Get(client)); });
}

int32_t ny_core_client_handler_get_msgbus(ny_client_t* client, ny_msgbus_t** out) {
    return Simulate("ny_client_handler_get_msgbus", [&] {
        const auto target = Handles().Get(client);
        Require(out != nullptr);
        *out = target->Settings().bus;
    });
}

int32_t ny_core_client_handler_set_msgbus(ny_client_t* client, ny_msgbus_t* bus) {
    return Simulate("ny_client_handler_set_msgbus", [&] {
        const auto target = Handles().Get(client);
        static_cast<void>(Handles().Get(bus));
        target->Set([&](ClientSettings& settings) { settings.bus = bus; });
    });
}
