// Calls into products that the control interface asks for.
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

// A registration with the same functions and data, which lives on without the other. Its accessors of tasks are
// replaced by some that stay when the agent's libraries are unloaded.
AnyRegistration CopyOf(const AnyRegistration& registration);

// A function that makes the callback, which must be one of the registration's, and returns its answer.
std::function<int32_t()> MakeProductCall(ny_sim_callback callback, std::shared_ptr<Client> client,
                                         AnyRegistration registration);

}  // namespace simulator
