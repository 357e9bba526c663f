// The last call of every register function of the agent.
#pragma once

#include <memory>
#include <variant>

#include "simulator/core/client/Client.h"

namespace simulator {

// A registration of any of the services, or of the log.
using AnyRegistration =
    std::variant<RegistrationTable<PropertyProvider>::Pointer, RegistrationTable<PolicyCallback>::Pointer,
                 RegistrationTable<TaskHandler>::Pointer, RegistrationTable<UpdaterCallbacks>::Pointer,
                 RegistrationTable<LogCallback>::Pointer>;

// A register function calls this when the client has the registration, before it returns. Defined in hostility/, which
// knows the services; the services do not know hostility/.
void OnRegistered(const std::shared_ptr<Client>& client, const AnyRegistration& registration);

}  // namespace simulator
