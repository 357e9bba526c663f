#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"

namespace corvane::ny {

// Answers the agent's property requests, behind the plain function that the agent is given.
class property_provider {
public:
    virtual ~property_provider() = default;

    // Adds the product's properties to the agent's bag. Returns the agent's result code.
    virtual int32_t provide(ny_client_t* agentClient, const std::string& productId, ny_property_bag_t* bag) = 0;
};

}  // namespace corvane::ny
