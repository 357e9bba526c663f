// What a hostile agent does beyond its contract.
#pragma once

#include <atomic>
#include <memory>

#include "AgentLock.h"
#include "RegisterCalls.h"
#include "RememberedRegistrations.h"

namespace simulator {

struct Hostility {
    // A client has been given a registration, and register is about to return.
    void OnRegistered(const std::shared_ptr<Client>& client, const AnyRegistration& registration) {
        remembered.Note(*client, registration);
        registerCalls.Make(client, registration);
    }

    void Clear() {
        lock.Switch(false);
        impatient = false;
        registerCalls.Clear();
        remembered.Switch(false);
    }

    AgentLock lock;
    std::atomic<bool> impatient = false;  // whether the end of a registration waits for no callback
    RegisterCalls registerCalls;
    RememberedRegistrations remembered;
};

}  // namespace simulator
