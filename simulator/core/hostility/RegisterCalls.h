// The callbacks that the agent makes while it registers.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "simulator/core/hostility/ProductCall.h"

namespace simulator {

class RegisterCalls {
public:
    // Throws Failure for an unknown callback or mode.
    void Set(ny_sim_callback callback, ny_sim_register_call mode);
    // Makes the callbacks that are set for the registration, with no lock of this object held.
    void Make(const std::shared_ptr<Client>& client, const AnyRegistration& registration);

    size_t Count() const;
    std::optional<int32_t> AnswerAt(size_t index) const;
    void Clear();

private:
    using Modes = std::map<ny_sim_callback, ny_sim_register_call>;

    Modes CurrentModes() const;

    mutable std::mutex mutex;
    Modes modes;
    std::vector<int32_t> answers;
};

}  // namespace simulator
