// What was registered once, whether or not it still is.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "simulator/core/hostility/ProductCall.h"

namespace simulator {

// Keeps copies: neither a client nor a registration lives longer for being remembered.
class RememberedRegistrations {
public:
    // Switching it off forgets all.
    void Switch(bool on);
    // Notes the registration, if switched on.
    void Note(const Client& client, const AnyRegistration& registration);

    // These take the registrations of the product that have such a callback, the oldest first. Throw Failure for an
    // unknown callback, MakeCall also when there are not so many.
    size_t Count(ny_sim_callback callback, std::string_view productId) const;
    size_t CountUnregistered(ny_sim_callback callback, std::string_view productId) const;
    std::function<int32_t()> MakeCall(ny_sim_callback callback, std::string_view productId, size_t index) const;

private:
    struct Remembered {
        std::shared_ptr<Client> client;  // has nothing but the name and the handle of the one that registered
        AnyRegistration registration;
    };

    std::vector<Remembered> Find(ny_sim_callback callback, std::string_view productId) const;

    mutable std::mutex mutex;
    bool isOn = false;
    std::vector<Remembered> all;
};

}  // namespace simulator
