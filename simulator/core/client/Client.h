// A client of the agent: a process with products, as the agent sees it.
#pragma once

#include <atomic>
#include <mutex>
#include <string>

#include "simulator/core/client/Callbacks.h"
#include "simulator/core/client/RegistrationTable.h"
#include "simulator/core/threads/CallbackGate.h"

namespace simulator {

// Has no state: only its handle is used.
struct MessageBus {};

// The settings of a client that the agent uses; the client's setters change them.
struct ClientSettings {
    LogCallback logCallback;
    ny_msgbus_t* bus = nullptr;
};

class Client {
public:
    explicit Client(const char* product) : productId(product) {}

    ClientSettings Settings() const;
    // Changes the settings: `change` gets a reference to them and must not use the client.
    template <class Change>
    void Set(const Change& change) {
        const std::lock_guard lock(mutex);
        change(settings);
    }

    // Ends every registration and every callback; returns when none runs on another thread.
    void EndCallbacks();

    const std::string productId;
    // Both are set before the client is handed out and stay.
    ny_client_t* handle = nullptr;
    ny_msgbus_t* ownBus = nullptr;

    std::atomic<bool> started = false;
    CallbackGate logGate;
    RegistrationTable<PropertyProvider> propertyProviders;
    RegistrationTable<PolicyCallback> policyCallbacks;
    RegistrationTable<UpdaterCallbacks> updaters;
    RegistrationTable<TaskHandler> taskHandlers;  // by TaskHandlerKey

private:
    mutable std::mutex mutex;
    ClientSettings settings;
};

}  // namespace simulator
