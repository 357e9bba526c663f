// Control functions: tasks, requests and reports.
#include "ny_simulator.h"
#include "simulator/core/client/ClientTable.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/scheduler/LentTasks.h"
#include "simulator/core/scheduler/Scheduler.h"
#include "simulator/core/scheduler/TaskRequest.h"
#include "simulator/core/threads/AgentThread.h"

using namespace simulator;

// The caller's share in a request; the agent thread has another.
struct ny_sim_task_request {
    std::shared_ptr<TaskRequest> request;
    uint32_t threadId = 0;
};

namespace {

TaskRequest::Callback CallbackOf(ny_sim_task_operation operation) {
    switch (operation) {
        case NY_SIM_TASK_EXECUTE: return &ny_task_callbacks_t::execute;
        case NY_SIM_TASK_STOP: return &ny_task_callbacks_t::stop;
        case NY_SIM_TASK_REMOVE: return &ny_task_callbacks_t::remove;
        case NY_SIM_TASK_UPDATE_STATUS: return &ny_task_callbacks_t::update_status;
    }
    throw Failure{NY_INVALID_ARGUMENT};
}

// A registration for the task's own type comes before one for all types, also when another client has it.
std::shared_ptr<TaskRequest> MakeRequest(const TaskPointer& task, TaskRequest::Callback callback) {
    const auto clients = TheClients().All();
    const char* const type = task->type ? task->type->c_str() : nullptr;
    for (const char* const registeredType : {type, static_cast<const char*>(nullptr)}) {
        for (const auto& client : clients) {
            if (auto handler = client->taskHandlers.Find(TaskHandlerKey(task->productId, registeredType))) {
                return std::make_shared<TaskRequest>(client, std::move(handler), task, callback);
            }
        }
    }
    throw Failure{NY_SIM_NOT_REGISTERED};
}

void GiveReport(const std::optional<ny_sim_task_report_t>& report, ny_sim_task_report_t* out) {
    Require(report && out != nullptr);
    *out = *report;
}

}  // namespace

int32_t ny_sim_tasks_from_json(const char* json) {
    return Guarded("ny_sim_tasks_from_json", [&] {
        Require(json != nullptr);
        TheScheduler().SetTasks(TasksFromJson(json));
    });
}

int32_t ny_sim_has_task_callbacks(const char* productId, const char* taskType) {
    const int32_t found = Guarded("ny_sim_has_task_callbacks", [&] {
        Require(productId != nullptr);
        const std::string key = TaskHandlerKey(productId, taskType);
        for (const auto& client : TheClients().All()) {
            if (client->taskHandlers.Find(key) != nullptr) {
                return;
            }
        }
        throw Failure{NY_SIM_NOT_REGISTERED};
    });
    return found == NY_OK ? 1 : 0;
}

size_t ny_sim_lent_tasks(void) {
    return TheLentTasks().Count();
}

int32_t ny_sim_request_task(const char* taskId, ny_sim_task_operation operation, ny_sim_task_request_t** out) {
    return Guarded("ny_sim_request_task", [&] {
        Require(taskId != nullptr && out != nullptr);
        const TaskPointer task = TheScheduler().Find(taskId);
        Require(task != nullptr);
        auto handle = std::make_unique<ny_sim_task_request_t>();
        const auto request = MakeRequest(task, CallbackOf(operation));
        handle->request = request;
        handle->threadId = StartAgentThread([request] { request->Run(); });
        *out = handle.release();
    });
}

int32_t ny_sim_task_request_wait(ny_sim_task_request_t* request, uint32_t milliseconds, int32_t* answer) {
    return Guarded("ny_sim_task_request_wait", [&] {
        Require(request != nullptr);
        if (!request->request->AnsweredSignal().WaitFor(std::chrono::milliseconds(milliseconds))) {
            throw Failure{NY_SIM_TIMEOUT};
        }
        if (answer != nullptr) {
            *answer = request->request->Answer();
        }
    });
}

uint32_t ny_sim_task_request_thread(ny_sim_task_request_t* request) {
    return request == nullptr ? 0 : request->threadId;
}

void ny_sim_task_request_release(ny_sim_task_request_t* request) {
    if (request != nullptr) {
        request->request->AnsweredSignal().Wait();
        delete request;
    }
}

size_t ny_sim_task_report_count(void) {
    return TheScheduler().ReportCount();
}

int32_t ny_sim_get_task_report(size_t index, ny_sim_task_report_t* out) {
    return Guarded("ny_sim_get_task_report", [&] { GiveReport(TheScheduler().ReportAt(index), out); });
}

int32_t ny_sim_last_task_report(const char* taskId, ny_sim_task_report_t* out) {
    return Guarded("ny_sim_last_task_report", [&] {
        Require(taskId != nullptr);
        GiveReport(TheScheduler().LastReportOf(taskId), out);
    });
}

int32_t ny_sim_wait_task_reports(size_t count, uint32_t milliseconds) {
    return Guarded("ny_sim_wait_task_reports", [&] {
        if (!TheScheduler().WaitForReports(count, std::chrono::milliseconds(milliseconds))) {
            throw Failure{NY_SIM_TIMEOUT};
        }
    });
}

void ny_sim_clear_task_reports(void) {
    TheScheduler().ClearReports();
}
