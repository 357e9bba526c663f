#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ny_simulator.h"
#include "support/LineLog.h"

// The agent asks a product for its properties; the answer is waited for at the latest when the object ends.
class AgentRequest {
public:
    explicit AgentRequest(const std::string& productId)
        : code(ny_sim_request_properties(productId.c_str(), &request)) {}
    ~AgentRequest() { ny_sim_property_request_release(request); }
    AgentRequest(const AgentRequest&) = delete;
    AgentRequest& operator=(const AgentRequest&) = delete;

    // Whether there was a provider to ask.
    bool WasMade() const { return code == NY_OK; }
    bool IsAnsweredWithin(std::chrono::milliseconds limit) const {
        return ny_sim_property_request_wait(request, static_cast<uint32_t>(limit.count()), nullptr) == NY_OK;
    }

    // The product's answer, or the code for why it was not asked.
    int32_t Answer() const {
        int32_t answer = code;
        if (WasMade()) {
            EXPECT_EQ(ny_sim_property_request_wait(request, static_cast<uint32_t>(soon.count()), &answer), NY_OK);
        }
        return answer;
    }

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

    uint32_t ThreadId() const { return ny_sim_property_request_thread(request); }

private:
    ny_sim_property_request_t* request = nullptr;
    int32_t code;
};

// One request, as "answer <code>" and the properties.
inline std::vector<std::string> Ask(const std::string& productId) {
    const AgentRequest request(productId);
    std::vector<std::string> lines = request.Properties();
    lines.insert(lines.begin(), "answer " + std::to_string(request.Answer()));
    return lines;
}
