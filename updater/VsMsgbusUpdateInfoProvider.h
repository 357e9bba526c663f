#pragma once

#include <string>

#include "msgbus/registrations/AgentService.h"
#include "updater/updater_handler.h"

namespace bridge {

// The update service: what the agent's updater calls to tell a product of updates and to read and set what it knows of
// the product.
//
// Every operation answers NY_OK: a product without a callback and a callback that fails both leave the result as it
// came, and the agent's variant untouched.
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
