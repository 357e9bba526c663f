#include "simulator/core/hostility/RememberedRegistrations.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "simulator/core/frame/Failure.h"

namespace simulator {

void RememberedRegistrations::Switch(bool on) {
    const std::lock_guard lock(mutex);
    isOn = on;
    if (!on) {
        all = {};
    }
}

void RememberedRegistrations::Note(const Client& client, const AnyRegistration& registration) {
    const std::lock_guard lock(mutex);
    if (isOn) {
        auto copy = std::make_shared<Client>(client.productId.c_str());
        copy->handle = client.handle;
        all.push_back({std::move(copy), CopyOf(registration)});
    }
}

size_t RememberedRegistrations::Count(ny_sim_callback callback, std::string_view productId) const {
    return Find(callback, productId).size();
}

size_t RememberedRegistrations::CountUnregistered(ny_sim_callback callback, std::string_view productId) const {
    const std::vector<Remembered> found = Find(callback, productId);
    const auto count = std::count_if(found.begin(), found.end(), [](const Remembered& remembered) {
        return IsUnregistered(remembered.registration);
    });
    return static_cast<size_t>(count);
}

std::function<int32_t()> RememberedRegistrations::MakeCall(ny_sim_callback callback, std::string_view productId,
                                                           size_t index) const {
    const std::vector<Remembered> found = Find(callback, productId);
    if (index >= found.size()) {
        throw Failure{NY_SIM_NOT_REGISTERED};
    }
    return MakeProductCall(callback, found[index].client, found[index].registration);
}

std::vector<RememberedRegistrations::Remembered> RememberedRegistrations::Find(ny_sim_callback callback,
                                                                               std::string_view productId) const {
    static_cast<void>(IsOf(callback, {}));
    std::vector<Remembered> found;
    const std::lock_guard lock(mutex);
    std::copy_if(all.begin(), all.end(), std::back_inserter(found), [&](const Remembered& candidate) {
        return IsOf(callback, candidate.registration) && ProductOf(candidate.registration) == productId;
    });
    return found;
}

}  // namespace simulator
