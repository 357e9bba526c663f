#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"

namespace corvane::ny {

// What answers the agent's property requests, behind the plain function that the agent is given.
class property_provider {
public:
    explicit property_provider(ny_client_t* agentClient) noexcept : client(agentClient) {}
    virtual ~property_provider() = default;

    // Adds the product's properties to the agent's bag. Returns the agent's result code.
    virtual int32_t provide(ny_client_t* agentClient, const std::string& productId, ny_property_bag_t* bag) = 0;

    ny_client_t* Client() const noexcept { return client; }

private:
    ny_client_t* const client;
};

}  // namespace corvane::ny
