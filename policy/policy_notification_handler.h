#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"

namespace corvane::ny::policies {

// Answers the agent's policy notifications, behind the plain function that the agent is given.
class policy_notification_handler {
public:
    virtual ~policy_notification_handler() = default;

    // The product's policies may have changed; `uri` is the notification's own. Returns the agent's result code.
    virtual int32_t on_notification(ny_client_t* agentClient, const std::string& productId, ny_policy_uri_t* uri) = 0;
};

}  // namespace corvane::ny::policies
