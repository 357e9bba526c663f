#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"
#include "msgbus/registrations/AgentService.h"

namespace corvane::ny::policies {

// Answers the agent's policy notifications, behind the plain function that the agent is given.
class policy_notification_handler {
public:
    virtual ~policy_notification_handler() = default;

    // The product's policies may have changed; `uri` is the notification's own. Returns the agent's result code.
    virtual int32_t on_notification(ny_client_t* agentClient, const std::string& productId, ny_policy_uri_t* uri) = 0;
};

}  // namespace corvane::ny::policies

namespace bridge {

// The policy service: what the agent calls when the policies of a product may have changed.
class VsMsgbusPolicyEnforcer : public AgentServiceFor<corvane::ny::policies::policy_notification_handler> {
public:
    using AgentServiceFor::AgentServiceFor;
    ~VsMsgbusPolicyEnforcer() override;

    // Has the product's enforcer enforce, if it has one. NY_OK, also without one; the code of an agent exception that
    // the module let out; NY_UNEXPECTED for anything else that it let out. The notification's uri selects nothing: a
    // module reads all its policies.
    int32_t on_notification(ny_client_t* agentClient, const std::string& productId, ny_policy_uri_t* uri) override;

private:
    int32_t RegisterWithAgent(const std::string& productId) override;
    int32_t UnregisterFromAgent(const std::string& productId) override;
};

}  // namespace bridge
