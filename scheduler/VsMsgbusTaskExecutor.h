#pragma once

#include <string>

#include "msgbus/registrations/AgentService.h"
#include "scheduler/task_handler.h"

namespace bridge {

// The task service: what the agent's scheduler calls for the tasks of a product.
//
// on_... ask the product's enforcer, if it has one. NY_OK, also without one; NY_UNEXPECTED when something escaped the
// module. They raise the agent exception when the task does not tell its id.
class VsMsgbusTaskExecutor : public AgentServiceFor<corvane::ny::scheduler::task_handler> {
public:
    using AgentServiceFor::AgentServiceFor;
    ~VsMsgbusTaskExecutor() override;

    // Reports: 4 and 3 for these answers of the module, 3 for a failure, else 2.
    int32_t on_execute(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                       ny_task_t* task) override;
    int32_t on_stop(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                    ny_task_t* task) override;
    int32_t on_remove(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                      ny_task_t* task) override;
    // Reports: 4 and 2 for these answers of the module, else 3.
    int32_t on_update_status(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                             ny_task_t* task) override;

    // Tells the agent how a task stands; a failure's text goes to no log. Does nothing once the agent's client is being
    // stopped.
    void UpdateStatus(const std::string& taskId, int32_t status);

private:
    int32_t RegisterWithAgent(const std::string& productId) override;
    int32_t UnregisterFromAgent(const std::string& productId) override;
};

}  // namespace bridge
