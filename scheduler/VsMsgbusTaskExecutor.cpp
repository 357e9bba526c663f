#include "scheduler/VsMsgbusTaskExecutor.h"

#include "dispatcher/groups/SchedulerGroup.h"
#include "msgbus/client/AgentUse.h"
#include "scheduler/AgentTask.h"
#include "scheduler/TaskCall.h"
#include "values/UnloggedText.h"

namespace bridge {

using corvane::ny::scheduler::task_handler;
using VsKit::CUniStream;
using VsKitMsgbus::INYTaskEnforcer;

namespace {

template <auto slot>
int32_t CallHandlerSlot(ny_client_t* /*client*/, const char* productId, const char* taskType, ny_task_t* task,
                        void* userData) {
    return CallHandler<task_handler>(productId, userData, [&](auto& service) {
        return (service.*slot)(service.Client(), productId, taskType != nullptr ? taskType : "", task);
    });
}

constexpr ny_task_callbacks_t taskCallbacks = {
    &CallHandlerSlot<&task_handler::on_execute>,
    &CallHandlerSlot<&task_handler::on_stop>,
    &CallHandlerSlot<&task_handler::on_remove>,
    &CallHandlerSlot<&task_handler::on_update_status>,
};

int32_t ResultOf(const TaskCall::Outcome& outcome) {
    return outcome.hasFailed ? NY_UNEXPECTED : NY_OK;
}

// Calls the module, and does not report its answer to the agent.
int32_t CallWithoutReport(const TaskCall& call, TaskCall::Operation operation) {
    const TaskCall::Outcome outcome = call.AskModule(operation);
    if (outcome.answer == INYTaskEnforcer::Failed) {
        call.ComposeFailure();
    }
    return ResultOf(outcome);
}

void TellAgent(const AgentUse& use, const std::string& taskId, int32_t status) noexcept {
    const auto update = agent::ny_scheduler_update_task_status.In(use.Libraries());
    const int32_t result = update(use.Client(), taskId.c_str(), status);
    if (result != NY_OK) {
        ComposeUnlogged(
            [result](CUniStream& text) { text << L"Failed to update the task status, error  [" << result << L"]"; });
    }
}

// Runs `call(use)`, during which `client` is not released. Does nothing when that client is gone, as when a module has
// left the bridge from inside its callback.
template <class Call>
void WhileClientStays(const ny_client_t* client, Call&& call) {
    const AgentUse use;
    if (use && use.Client() == client) {
        call(use);
    }
}

// Asks the task for its id once more.
void ReportStatus(ny_client_t* client, ny_task_t* task, int32_t status) {
    WhileClientStays(client, [&](const AgentUse& use) { TellAgent(use, TaskId(task), status); });
}

}  // namespace

VsMsgbusTaskExecutor::~VsMsgbusTaskExecutor() = default;

int32_t VsMsgbusTaskExecutor::RegisterWithAgent(const std::string& productId) {
    return agent::ny_scheduler_register_task_callbacks.In(Libraries())(Client(), productId.c_str(), nullptr,
                                                                       &taskCallbacks, CallbackArgument());
}

int32_t VsMsgbusTaskExecutor::UnregisterFromAgent(const std::string& productId) {
    return agent::ny_scheduler_unregister_task_callbacks.In(Libraries())(Client(), productId.c_str(), nullptr);
}

int32_t VsMsgbusTaskExecutor::on_execute(ny_client_t* agentClient, const std::string& productId,
                                         const std::string& /*taskType*/, ny_task_t* task) {
    const TaskCall call(productId, task, L"Failed to execute the task ", Libraries());
    const TaskCall::Outcome outcome = call.AskModule(&INYTaskEnforcer::ExecuteTask);
    int32_t status = outcome.hasFailed ? INYTaskEnforcer::Failed : INYTaskEnforcer::NothingDecided;
    if (outcome.answer == INYTaskEnforcer::Succeeded) {
        status = INYTaskEnforcer::Succeeded;
        call.ComposeText(L"Successfully executed the task ");
    } else if (outcome.answer == INYTaskEnforcer::Failed) {
        status = INYTaskEnforcer::Failed;
        call.ComposeFailure();
    }
    ReportStatus(agentClient, task, status);
    return ResultOf(outcome);
}

int32_t VsMsgbusTaskExecutor::on_stop(ny_client_t* /*agentClient*/, const std::string& productId,
                                      const std::string& /*taskType*/, ny_task_t* task) {
    return CallWithoutReport(TaskCall(productId, task, L"Failed to stop the task ", Libraries()),
                             &INYTaskEnforcer::StopTask);
}

int32_t VsMsgbusTaskExecutor::on_remove(ny_client_t* /*agentClient*/, const std::string& productId,
                                        const std::string& /*taskType*/, ny_task_t* task) {
    return CallWithoutReport(TaskCall(productId, task, L"Failed to remove the task ", Libraries()),
                             &INYTaskEnforcer::RemoveTask);
}

int32_t VsMsgbusTaskExecutor::on_update_status(ny_client_t* agentClient, const std::string& productId,
                                               const std::string& /*taskType*/, ny_task_t* task) {
    const TaskCall call(productId, task, L"Failed to update the task status ", Libraries());
    const TaskCall::Outcome outcome = call.AskModule(&INYTaskEnforcer::UpdateTaskStatus);
    const int32_t answer = outcome.answer.value_or(INYTaskEnforcer::Failed);
    const bool isPassedOn = answer == INYTaskEnforcer::Succeeded || answer == INYTaskEnforcer::NothingDecided;
    ReportStatus(agentClient, task, isPassedOn ? answer : INYTaskEnforcer::Failed);
    return ResultOf(outcome);
}

void VsMsgbusTaskExecutor::UpdateStatus(const std::string& taskId, int32_t status) {
    WhileClientStays(Client(), [&](const AgentUse& use) { TellAgent(use, taskId, status); });
}

}  // namespace bridge
