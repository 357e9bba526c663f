// Control functions: policies and the notifications of them.
#include "ny_simulator.h"
#include "simulator/core/client/ClientTable.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/policy/PolicyJson.h"
#include "simulator/core/policy/PolicyNotification.h"
#include "simulator/core/policy/PolicyStore.h"
#include "simulator/core/threads/AgentThread.h"

using namespace simulator;

// The caller's share in a notification; the agent thread has another.
struct ny_sim_policy_request {
    std::shared_ptr<PolicyNotification> notification;
    uint32_t threadId = 0;
};

namespace {

struct Found {
    std::shared_ptr<Client> client;
    PolicyNotification::Callback callback;  // null when no client has one of that product
};

Found FindCallback(const char* productId) {
    for (const auto& client : TheClients().All()) {
        if (auto callback = client->policyCallbacks.Find(productId)) {
            return {client, std::move(callback)};
        }
    }
    return {};
}

void Notify(const char* productId, const PolicyText& toldId, ny_sim_policy_request_t** out) {
    auto handle = std::make_unique<ny_sim_policy_request_t>();
    auto [client, callback] = FindCallback(productId);
    if (callback == nullptr) {
        throw Failure{NY_SIM_NOT_REGISTERED};
    }
    const auto notification = std::make_shared<PolicyNotification>(client, std::move(callback), toldId);
    handle->notification = notification;
    handle->threadId = StartAgentThread([notification] { notification->Run(); });
    *out = handle.release();
}

}  // namespace

int32_t ny_sim_policies_from_json(const char* json) {
    return Guarded("ny_sim_policies_from_json", [&] {
        Require(json != nullptr);
        ThePolicies().Replace(PoliciesFromJson(json));
    });
}

int32_t ny_sim_has_policy_callback(const char* productId) {
    return productId != nullptr && FindCallback(productId).callback != nullptr ? 1 : 0;
}

uint32_t ny_sim_policy_mask(const char* productId) {
    if (productId == nullptr) {
        return 0;
    }
    const Found found = FindCallback(productId);
    return found.callback != nullptr ? found.callback->callbacks.mask : 0;
}

int32_t ny_sim_notify_policy(const char* productId, ny_sim_policy_request_t** out) {
    return Guarded("ny_sim_notify_policy", [&] {
        Require(productId != nullptr && out != nullptr);
        Notify(productId, productId, out);
    });
}

int32_t ny_sim_notify_policy_as(const char* productId, const char* toldId, ny_sim_policy_request_t** out) {
    return Guarded("ny_sim_notify_policy_as", [&] {
        Require(productId != nullptr && out != nullptr);
        Notify(productId, toldId != nullptr ? PolicyText(toldId) : std::nullopt, out);
    });
}

int32_t ny_sim_policy_request_wait(ny_sim_policy_request_t* request, uint32_t milliseconds, int32_t* answer) {
    return Guarded("ny_sim_policy_request_wait", [&] {
        Require(request != nullptr);
        if (!request->notification->AnsweredSignal().WaitFor(std::chrono::milliseconds(milliseconds))) {
            throw Failure{NY_SIM_TIMEOUT};
        }
        if (answer != nullptr) {
            *answer = request->notification->Answer();
        }
    });
}

uint32_t ny_sim_policy_request_thread(ny_sim_policy_request_t* request) {
    return request == nullptr ? 0 : request->threadId;
}

void ny_sim_policy_request_release(ny_sim_policy_request_t* request) {
    if (request != nullptr) {
        request->notification->AnsweredSignal().Wait();
        delete request;
    }
}
