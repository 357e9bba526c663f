#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"
#include "msgbus/registrations/AgentService.h"

namespace corvane::ny::scheduler {

// Answers the agent's scheduler, behind the plain functions that the agent is given. Each operation returns the agent's
// result code; the task is the agent's and borrowed during the call.
class task_handler {
public:
    virtual ~task_handler() = default;

    virtual int32_t on_execute(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                               ny_task_t* task) = 0;
    virtual int32_t on_stop(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                            ny_task_t* task) = 0;
    virtual int32_t on_remove(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                              ny_task_t* task) = 0;
    virtual int32_t on_update_status(ny_client_t* agentClient, const std::string& productId,
                                     const std::string& taskType, ny_task_t* task) = 0;
};

}  // namespace corvane::ny::scheduler

namespace bridge {

// The task service: what the agent's scheduler calls for the tasks of a product.
//
// The on_ functions call the product's enforcer. They answer NY_OK, also when the product has none, and NY_UNEXPECTED
// when the module threw. They raise the agent exception when the task's id cannot be read.
class VsMsgbusTaskExecutor : public AgentServiceFor<corvane::ny::scheduler::task_handler> {
public:
    using AgentServiceFor::AgentServiceFor;
    ~VsMsgbusTaskExecutor() override;

    // Reports to the agent: the module's answer when it is Succeeded or Failed, Failed when it threw, else
    // NothingDecided.
    int32_t on_execute(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                       ny_task_t* task) override;
    int32_t on_stop(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                    ny_task_t* task) override;
    int32_t on_remove(ny_client_t* agentClient, const std::string& productId, const std::string& taskType,
                      ny_task_t* task) override;
    // Reports to the agent: the module's answer when it is Succeeded or NothingDecided, else Failed.
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
