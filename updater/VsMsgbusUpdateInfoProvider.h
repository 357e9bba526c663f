#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"
#include "msgbus/registrations/AgentService.h"

namespace corvane::ny::updater {

// Answers the agent's updater, behind the plain functions that the agent is given. Texts whose meaning the agent's
// contract does not tell are named by their place: second, third, fourth. Each operation returns the agent's result
// code. The caller puts into `result` what the agent reads for a product without a callback; the operation replaces it
// with the module's own result, if there is one.
class updater_handler {
public:
    virtual ~updater_handler() = default;

    virtual int32_t update_notify(ny_client_t* agentClient, const std::string& productId, const std::string& second,
                                  const std::string& third, uint32_t number, const std::string& fourth,
                                  int32_t& result) = 0;

    // `value` is the agent's.
    virtual int32_t set_product_info(ny_client_t* agentClient, const std::string& productId, const std::string& second,
                                     const std::string& key, ny_variant_t* value, int32_t& result) = 0;

    // `out` receives a variant that the agent owns; null when the agent wants none.
    virtual int32_t get_product_info(ny_client_t* agentClient, const std::string& productId, const std::string& second,
                                     const std::string& key, ny_variant_t** out, int32_t& result) = 0;

    virtual int32_t event(ny_client_t* agentClient, const std::string& productId, const ny_updater_event_t* event) = 0;
};

}  // namespace corvane::ny::updater

namespace bridge {

// The update service. The agent's updater calls it to tell a product of updates, and to read and set values of the
// product.
//
// Every operation answers NY_OK. When the product has no callback, or its callback fails, the result and the agent's
// variant stay as they were.
class VsMsgbusUpdateInfoProvider : public AgentServiceFor<corvane::ny::updater::updater_handler> {
public:
    using AgentServiceFor::AgentServiceFor;
    ~VsMsgbusUpdateInfoProvider() override;

    int32_t update_notify(ny_client_t* agentClient, const std::string& productId, const std::string& second,
                          const std::string& third, uint32_t number, const std::string& fourth,
                          int32_t& result) override;
    int32_t set_product_info(ny_client_t* agentClient, const std::string& productId, const std::string& second,
                             const std::string& key, ny_variant_t* value, int32_t& result) override;
    int32_t get_product_info(ny_client_t* agentClient, const std::string& productId, const std::string& second,
                             const std::string& key, ny_variant_t** out, int32_t& result) override;
    // Ignored.
    int32_t event(ny_client_t* agentClient, const std::string& productId, const ny_updater_event_t* event) override;

private:
    int32_t RegisterWithAgent(const std::string& productId) override;
    int32_t UnregisterFromAgent(const std::string& productId) override;
};

}  // namespace bridge
