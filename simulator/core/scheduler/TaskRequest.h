// One thing that the agent has a product do with a task.
#pragma once

#include <cstdint>
#include <memory>

#include "simulator/core/client/Client.h"
#include "simulator/core/scheduler/Task.h"
#include "simulator/core/threads/Signal.h"

namespace simulator {

class TaskRequest {
public:
    using Handler = RegistrationTable<TaskHandler>::Pointer;
    using Callback = ny_task_callback_t ny_task_callbacks_t::*;

    TaskRequest(std::shared_ptr<Client> askedClient, Handler askedHandler, TaskPointer askedTask,
                Callback askedCallback);

    // Calls the product and keeps its answer; called once, on an agent thread.
    void Run() noexcept;

    const Signal& AnsweredSignal() const { return answered; }
    // May only be asked for once the request was answered.
    int32_t Answer() const { return answer; }

private:
    int32_t Ask();

    const std::shared_ptr<Client> client;
    const Handler handler;
    const TaskPointer task;
    const Callback callback;
    int32_t answer = NY_OK;
    Signal answered;
};

}  // namespace simulator
