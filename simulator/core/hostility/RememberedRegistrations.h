// The registrations made while this is switched on, also those that have ended.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "simulator/core/hostility/ProductCall.h"

namespace simulator {

// Keeps copies, so that no client and no registration lives longer than without it.
class RememberedRegistrations {
public:
    // Switching it off forgets all.
    void Switch(bool on);
    // Notes the registration, if switched on.
    void Note(const Client& client, const AnyRegistration& registration);

    // These look at the product's registrations that have such a callback, the oldest first. They throw Failure for an
    // unknown callback, MakeCall also for an index beyond the last.
    size_t Count(ny_sim_callback callback, std::string_view productId) const;
    size_t CountUnregistered(ny_sim_callback callback, std::string_view productId) const;
    std::function<int32_t()> MakeCall(ny_sim_callback callback, std::string_view productId, size_t index) const;

private:
    struct Remembered {
        std::shared_ptr<Client> client;  // a copy that has only product id and handle
        AnyRegistration registration;
    };

    std::vector<Remembered> Find(ny_sim_callback callback, std::string_view productId) const;

    mutable std::mutex mutex;
    bool isOn = false;
    std::vector<Remembered> all;
};

}  // namespace simulator
