// A client's registrations for one of the agent's services.
#pragma once

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/core/frame/Failure.h"
#include "simulator/core/threads/CallbackGate.h"

namespace simulator {

// `Callbacks` is what a product registers for the service: its functions and the data handed to them.
template <class Callbacks>
struct Registration {
    Registration(std::string_view product, const Callbacks& registered) : productId(product), callbacks(registered) {}

    const std::string productId;
    const Callbacks callbacks;
    CallbackGate gate;
    // Set when unregister has ended the registration; its copies share it.
    std::shared_ptr<std::atomic<bool>> isUnregistered = std::make_shared<std::atomic<bool>>(false);
};

template <class Callbacks>
class RegistrationTable {
public:
    using Pointer = std::shared_ptr<Registration<Callbacks>>;

    // The registration that is made. Throws Failure: NY_ALREADY_EXISTS when the product is registered,
    // NY_INVALID_ARGUMENT after EndAll.
    Pointer Add(std::string_view productId, const Callbacks& callbacks) {
        auto registration = std::make_shared<Registration<Callbacks>>(productId, callbacks);
        const std::lock_guard lock(mutex);
        Require(!ended);
        if (Locate(productId) != registrations.end()) {
            throw Failure{NY_ALREADY_EXISTS};
        }
        registrations.push_back(registration);
        return registration;
    }

    // Ends the product's registration and returns when no callback of it runs on another thread. Throws Failure when
    // there is none.
    void Remove(std::string_view productId) {
        Pointer registration;
        {
            const std::lock_guard lock(mutex);
            const auto place = Locate(productId);
            Require(place != registrations.end());
            registration = std::move(*place);
            registrations.erase(place);
        }
        registration->gate.Close();
        registration->gate.WaitForOthers();
        *registration->isUnregistered = true;
    }

    // Ends all registrations as Remove does. Add fails from now on.
    void EndAll() {
        std::vector<Pointer> remaining;
        {
            const std::lock_guard lock(mutex);
            ended = true;
            remaining.swap(registrations);
        }
        for (const Pointer& registration : remaining) {
            registration->gate.Close();
        }
        for (const Pointer& registration : remaining) {
            registration->gate.WaitForOthers();
        }
    }

    // The product's registration, or null.
    Pointer Find(std::string_view productId) {
        const std::lock_guard lock(mutex);
        const auto place = Locate(productId);
        return place == registrations.end() ? nullptr : *place;
    }

    // Calls `visitor` with the name of each registration, as it was added. The visitor must not use the table.
    template <class Visitor>
    void ForEachName(const Visitor& visitor) {
        const std::lock_guard lock(mutex);
        for (const Pointer& registration : registrations) {
            visitor(registration->productId);
        }
    }

private:
    typename std::vector<Pointer>::iterator Locate(std::string_view productId) {
        return std::find_if(registrations.begin(), registrations.end(),
                            [productId](const Pointer& candidate) { return candidate->productId == productId; });
    }

    std::mutex mutex;
    std::vector<Pointer> registrations;
    bool ended = false;
};

}  // namespace simulator
