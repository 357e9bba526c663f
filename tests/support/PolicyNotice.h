#pragma once

#include <string>

#include "support/ModuleRequest.h"

// The agent notifies a product of its policies.
class PolicyNotice : public ModuleRequest<ny_sim_policy_request_t, &ny_sim_policy_request_release,
                                          &ny_sim_policy_request_wait, &ny_sim_policy_request_thread> {
public:
    explicit PolicyNotice(const std::string& productId)
        : ModuleRequest([&](auto** made) { return ny_sim_notify_policy(productId.c_str(), made); }) {}
    // The product's callback is told another id, or none.
    PolicyNotice(const std::string& productId, const char* toldId)
        : ModuleRequest([&](auto** made) { return ny_sim_notify_policy_as(productId.c_str(), toldId, made); }) {}
};
