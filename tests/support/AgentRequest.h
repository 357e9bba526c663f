#pragma once

#include <string>
#include <vector>

#include "support/ModuleRequest.h"

// The agent asks a product for its properties.
class AgentRequest : public ModuleRequest<ny_sim_property_request_t, &ny_sim_property_request_release,
                                          &ny_sim_property_request_wait, &ny_sim_property_request_thread> {
public:
    explicit AgentRequest(const std::string& productId)
        : ModuleRequest([&](auto** made) { return ny_sim_request_properties(productId.c_str(), made); }) {}

    // Each as "<path>:<name>=<value>".
    std::vector<std::string> Properties() const {
        Answer();
        std::vector<std::string> properties;
        for (size_t i = 0; i < ny_sim_property_request_size(request); ++i) {
            const char* path = nullptr;
            const char* name = nullptr;
            const char* value = nullptr;
            EXPECT_EQ(ny_sim_property_request_get(request, i, &path, &name, &value), NY_OK);
            properties.push_back(std::string(path) + ":" + name + "=" + value);
        }
        return properties;
    }
};

// One request, as "answer <code>" and the properties.
inline std::vector<std::string> Ask(const std::string& productId) {
    const AgentRequest request(productId);
    std::vector<std::string> lines = request.Properties();
    lines.insert(lines.begin(), "answer " + std::to_string(request.Answer()));
    return lines;
}
