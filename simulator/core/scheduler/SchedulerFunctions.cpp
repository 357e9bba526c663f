// Agent functions by which a product is given its tasks and reports on them.
#include "simulator/core/client/Client.h"
#include "simulator/core/client/OnRegistered.h"
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/scheduler/Scheduler.h"

using namespace simulator;

int32_t ny_core_scheduler_register_task_callbacks(ny_client_t* client, const char* productId, const char* taskType,
                                                  const ny_task_callbacks_t* callbacks, void* userData,
                                                  const ny_task_methods_t* accessors) {
    return Simulate("ny_scheduler_register_task_callbacks", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr && callbacks != nullptr && accessors != nullptr);
        const AgentLockHold hold;
        OnRegistered(target,
                     target->taskHandlers.Add(TaskHandlerKey(productId, taskType), {*callbacks, userData, *accessors}));
    });
}

int32_t ny_core_scheduler_unregister_task_callbacks(ny_client_t* client, const char* productId, const char* taskType) {
    return Simulate("ny_scheduler_unregister_task_callbacks", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr);
        const AgentLockHold hold;
        target->taskHandlers.Remove(TaskHandlerKey(productId, taskType));
    });
}

int32_t ny_core_scheduler_update_task_status(ny_client_t* client, const char* taskId, int32_t status) {
    return Simulate("ny_scheduler_update_task_status", [&] {
        static_cast<void>(Handles().Get(client));
        Require(taskId != nullptr);
        TheScheduler().AddReport(taskId, status);
    });
}
