#include "simulator/core/updater/UpdaterRequest.h"

#include <utility>

#include "simulator/core/frame/Guarded.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/values/OptionalText.h"

namespace simulator {

// Nothing of an event can be read.
struct UpdaterEvent {};

UpdaterRequest::UpdaterRequest(UpdaterCall updaterCall, std::shared_ptr<Client> calledClient, Updater calledUpdater)
    : call(std::move(updaterCall)), client(std::move(calledClient)), updater(std::move(calledUpdater)) {}

void UpdaterRequest::Run() noexcept {
    answer = Guarded("updater request", [this] {
        if (const int32_t code = Call(); code != NY_OK) {
            throw Failure{code};
        }
    });
    answered.Set();
}

int32_t UpdaterRequest::Call() {
    const CallbackPass pass(updater->gate);
    if (!pass) {
        return NY_SIM_NOT_REGISTERED;
    }
    const char* const productId = call.withoutProduct ? nullptr : updater->productId.c_str();
    int32_t* const resultOut = call.withoutResult ? nullptr : &result;
    switch (call.kind) {
        case UpdaterCall::Kind::UpdateNotify: return Notify(productId, resultOut);
        case UpdaterCall::Kind::SetProductInfo: return SetInfo(productId, resultOut);
        case UpdaterCall::Kind::GetProductInfo: return GetInfo(productId, resultOut);
        case UpdaterCall::Kind::Event: return TellEvent(productId);
    }
    return NY_UNEXPECTED;
}

int32_t UpdaterRequest::Notify(const char* productId, int32_t* resultOut) {
    const UpdaterCallbacks& callbacks = updater->callbacks;
    return callbacks.table.update_notify(client->handle, productId, TextOrNull(call.second), TextOrNull(call.third),
                                         call.number, TextOrNull(call.fourth), resultOut, callbacks.userData);
}

int32_t UpdaterRequest::SetInfo(const char* productId, int32_t* resultOut) {
    const UpdaterCallbacks& callbacks = updater->callbacks;
    auto* const lent = call.value != nullptr ? Handles().Lend<ny_variant_t>(call.value) : nullptr;
    const int32_t code = callbacks.table.set_product_info(client->handle, productId, TextOrNull(call.second),
                                                          TextOrNull(call.key), lent, resultOut, callbacks.userData);
    if (lent != nullptr) {
        Handles().EndLoan(lent);
    }
    return code;
}

int32_t UpdaterRequest::GetInfo(const char* productId, int32_t* resultOut) {
    const UpdaterCallbacks& callbacks = updater->callbacks;
    ny_variant_t* given = nullptr;
    const int32_t code =
        callbacks.table.get_product_info(client->handle, productId, TextOrNull(call.second), TextOrNull(call.key),
                                         call.withoutOut ? nullptr : &given, resultOut, callbacks.userData);
    if (given != nullptr) {
        const auto content = Handles().Get(given);
        Handles().Release(given);
        value = TextOf(*content).Narrow();
    }
    return code;
}

int32_t UpdaterRequest::TellEvent(const char* productId) {
    const UpdaterCallbacks& callbacks = updater->callbacks;
    auto* const event = Handles().Lend<ny_updater_event_t>(std::make_shared<UpdaterEvent>());
    const int32_t code = callbacks.table.event(client->handle, productId, event, callbacks.userData);
    Handles().EndLoan(event);
    return code;
}

}  // namespace simulator
