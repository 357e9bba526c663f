// One call of the updater's into a product.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "ny_simulator.h"
#include "simulator/core/client/Client.h"
#include "simulator/core/threads/Signal.h"
#include "simulator/core/updater/UpdaterCall.h"

namespace simulator {

class UpdaterRequest {
public:
    using Updater = RegistrationTable<UpdaterCallbacks>::Pointer;

    UpdaterRequest(UpdaterCall updaterCall, std::shared_ptr<Client> calledClient, Updater calledUpdater);

    // Calls and keeps the answer; called once, on an agent thread. A registration that ended before the thread came to
    // it is not called and answers NY_SIM_NOT_REGISTERED.
    void Run() noexcept;

    const Signal& AnsweredSignal() const { return answered; }
    // The rest may only be asked for once the request was answered.
    int32_t Answer() const { return answer; }
    int32_t Result() const { return result; }
    // The value that the product gave for its information; none when it gave none.
    const std::optional<std::string>& Value() const { return value; }

private:
    int32_t Call();
    int32_t Notify(const char* productId, int32_t* resultOut);
    int32_t SetInfo(const char* productId, int32_t* resultOut);
    int32_t GetInfo(const char* productId, int32_t* resultOut);
    int32_t TellEvent(const char* productId);

    const UpdaterCall call;
    std::shared_ptr<Client> client;
    Updater updater;
    int32_t answer = NY_OK;
    int32_t result = NY_SIM_UNWRITTEN;
    std::optional<std::string> value;
    Signal answered;
};

}  // namespace simulator
