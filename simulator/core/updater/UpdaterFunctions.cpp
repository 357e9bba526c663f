// Agent functions by which a product registers for updates.
#include "simulator/core/client/Client.h"
#include "simulator/core/client/OnRegistered.h"
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"

using namespace simulator;

namespace {

bool IsComplete(const ny_updater_callbacks_t* callbacks) {
    return callbacks != nullptr && callbacks->update_notify != nullptr && callbacks->set_product_info != nullptr &&
           callbacks->get_product_info != nullptr && callbacks->event != nullptr;
}

}  // namespace

int32_t ny_core_updater_register_callbacks(ny_client_t* client, const char* productId,
                                           const ny_updater_callbacks_t* callbacks, void* userData) {
    return Simulate("ny_updater_register_callbacks", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr && IsComplete(callbacks));
        const AgentLockHold hold;
        OnRegistered(target, target->updaters.Add(productId, {*callbacks, userData}));
    });
}

int32_t ny_core_updater_unregister_callbacks(ny_client_t* client, const char* productId) {
    return Simulate("ny_updater_unregister_callbacks", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr);
        const AgentLockHold hold;
        target->updaters.Remove(productId);
    });
}
