// A call into a product that is made because the control interface says so.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ny_simulator.h"
#include "simulator/core/client/OnRegistered.h"

namespace simulator {

// Whether that callback is one of the registration's. Throws Failure for an unknown one.
bool IsOf(ny_sim_callback callback, const AnyRegistration& registration);

// The product that registered.
std::string ProductOf(const AnyRegistration& registration);

// Whether unregister has ended the registration, or the one that it is a copy of.
bool IsUnregistered(const AnyRegistration& registration);

// A registration with the same functions and data as the other, and a life of its own. What it needs of the agent's
// libraries is replaced by what does not go with them.
AnyRegistration CopyOf(const AnyRegistration& registration);

// Makes the callback, which must be one of the registration's, and gives back its answer.
std::function<int32_t()> MakeProductCall(ny_sim_callback callback, std::shared_ptr<Client> client,
                                         AnyRegistration registration);

}  // namespace simulator
