#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"
#include "msgbus/registrations/AgentService.h"

namespace corvane::ny {

// Answers the agent's property requests, behind the plain function that the agent is given.
class property_provider {
public:
    virtual ~property_provider() = default;

    // Adds the product's properties to the agent's bag. Returns the agent's result code.
    virtual int32_t provide(ny_client_t* agentClient, const std::string& productId, ny_property_bag_t* bag) = 0;
};

}  // namespace corvane::ny

namespace bridge {

// The property service: what the agent calls when it wants the properties of a product.
class VsMsgbusPropertyProvider : public AgentServiceFor<corvane::ny::property_provider> {
public:
    using AgentServiceFor::AgentServiceFor;
    ~VsMsgbusPropertyProvider() override;

    // Asks the product's collector, if it has one. NY_OK, also without one; the code of an agent exception that the
    // module let out; NY_UNEXPECTED for anything else that it let out.
    int32_t provide(ny_client_t* agentClient, const std::string& productId, ny_property_bag_t* bag) override;

private:
    int32_t RegisterWithAgent(const std::string& productId) override;
    int32_t UnregisterFromAgent(const std::string& productId) override;
};

}  // namespace bridge
