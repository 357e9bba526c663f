#include "simulator/core/policy/PolicyNotification.h"

#include <utility>

#include "ny_simulator.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/policy/PolicyUri.h"

namespace simulator {

PolicyNotification::PolicyNotification(std::shared_ptr<Client> notifiedClient, Callback notifiedCallback,
                                       PolicyText productToTell)
    : client(std::move(notifiedClient)), callback(std::move(notifiedCallback)), toldId(std::move(productToTell)) {}

void PolicyNotification::Run() noexcept {
    answer = Guarded("policy notification", [this] {
        if (const int32_t code = Notify(); code != NY_OK) {
            throw Failure{code};
        }
    });
    answered.Set();
}

int32_t PolicyNotification::Notify() {
    const CallbackPass pass(callback->gate);
    if (!pass) {
        return NY_SIM_NOT_REGISTERED;
    }
    HandleTable& handles = Handles();
    const auto uri = std::make_shared<PolicyUri>();
    uri->SetSoftwareId(callback->productId.c_str());
    auto* const handle = handles.Lend<ny_policy_uri_t>(uri);
    const PolicyCallback& told = callback->callbacks;
    const int32_t code = told.call(client->handle, TextOrNull(toldId), handle, told.callbackData);
    handles.EndLoan(handle);
    return code;
}

}  // namespace simulator
