#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"

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
