// One notification of a product's policies.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "simulator/core/client/Client.h"
#include "simulator/core/policy/Policy.h"
#include "simulator/core/threads/Signal.h"

namespace simulator {

class PolicyNotification {
public:
    using Callback = RegistrationTable<PolicyCallback>::Pointer;

    // `productToTell` is the product id that the callback gets, usually its own.
    PolicyNotification(std::shared_ptr<Client> notifiedClient, Callback notifiedCallback, PolicyText productToTell);

    // Calls the callback and keeps its answer; called once, on an agent thread. A registration that ended before the
    // thread came to it is not called and answers NY_SIM_NOT_REGISTERED.
    void Run() noexcept;

    const Signal& AnsweredSignal() const { return answered; }
    // May only be asked for once the notification was answered.
    int32_t Answer() const { return answer; }

private:
    int32_t Notify();

    const std::shared_ptr<Client> client;
    const Callback callback;
    const PolicyText toldId;
    int32_t answer = NY_OK;
    Signal answered;
};

}  // namespace simulator
