#include "simulator/core/client/Client.h"

namespace simulator {

ClientSettings Client::Settings() const {
    const std::lock_guard lock(mutex);
    return settings;
}

void Client::EndCallbacks() {
    logGate.Close();
    propertyProviders.EndAll();
    policyCallbacks.EndAll();
    updaters.EndAll();
    taskHandlers.EndAll();
    logGate.WaitForOthers();
}

}  // namespace simulator
