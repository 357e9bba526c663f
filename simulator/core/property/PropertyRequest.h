// One request of the agent's for a product's properties.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "simulator/core/client/Client.h"
#include "simulator/core/property/PropertyBag.h"
#include "simulator/core/threads/Signal.h"

namespace simulator {

class PropertyRequest {
public:
    using Provider = RegistrationTable<PropertyProvider>::Pointer;

    PropertyRequest(std::shared_ptr<Client> askedClient, Provider askedProvider);

    // Asks and keeps the answer; called once, on an agent thread. A registration that ended before the thread came to
    // it is not called and answers NY_SIM_NOT_REGISTERED.
    void Run() noexcept;

    const Signal& AnsweredSignal() const { return answered; }
    // The rest may only be asked for once the request was answered.
    int32_t Answer() const { return answer; }
    const std::vector<Property>& Properties() const { return properties; }

private:
    int32_t Ask();

    std::shared_ptr<Client> client;
    Provider provider;
    int32_t answer = NY_OK;
    std::vector<Property> properties;
    Signal answered;
};

}  // namespace simulator
