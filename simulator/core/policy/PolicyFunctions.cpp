// Agent functions by which a product registers for policy notifications and asks for one.
#include "simulator/core/client/Client.h"
#include "simulator/core/client/OnRegistered.h"
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/policy/PolicyNotification.h"
#include "simulator/core/threads/AgentThread.h"

using namespace simulator;

int32_t ny_core_policy_register_notification_callback(ny_client_t* client, const char* productId, uint32_t mask,
                                                      ny_policy_callback_t callback, void* callbackData) {
    return Simulate("ny_policy_register_notification_callback", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr && callback != nullptr);
        const AgentLockHold hold;
        OnRegistered(target, target->policyCallbacks.Add(productId, {callback, callbackData, mask}));
    });
}

int32_t ny_core_policy_unregister_notification_callback(ny_client_t* client, const char* productId) {
    return Simulate("ny_policy_unregister_notification_callback", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr);
        const AgentLockHold hold;
        target->policyCallbacks.Remove(productId);
    });
}

int32_t ny_core_policy_enforce(ny_client_t* client, const char* productId) {
    return Simulate("ny_policy_enforce", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr);
        auto callback = target->policyCallbacks.Find(productId);
        if (callback == nullptr) {
            throw Failure{NY_SIM_NOT_REGISTERED};
        }
        const auto notification = std::make_shared<PolicyNotification>(target, std::move(callback), productId);
        StartAgentThread([notification] { notification->Run(); });
    });
}
