#include "simulator/core/scheduler/TaskRequest.h"

#include <utility>

#include "simulator/core/frame/Guarded.h"
#include "simulator/core/scheduler/LentTasks.h"

namespace simulator {

TaskRequest::TaskRequest(std::shared_ptr<Client> askedClient, Handler askedHandler, TaskPointer askedTask,
                         Callback askedCallback)
    : client(std::move(askedClient)),
      handler(std::move(askedHandler)),
      task(std::move(askedTask)),
      callback(askedCallback) {}

void TaskRequest::Run() noexcept {
    // Guarded answers NY_OK or the code of a Failure: the product's code is thrown as one.
    answer = Guarded("task request", [this] {
        if (const int32_t code = Ask(); code != NY_OK) {
            throw Failure{code};
        }
    });
    answered.Set();
}

int32_t TaskRequest::Ask() {
    const CallbackPass pass(handler->gate);
    const TaskHandler& registered = handler->callbacks;
    if (!pass || registered.callbacks.*callback == nullptr) {
        return NY_SIM_NOT_REGISTERED;
    }
    const TaskLoan loan(TheLentTasks(), task, registered.accessors);
    return (registered.callbacks.*callback)(client->handle, task->productId.c_str(),
                                            task->type ? task->type->c_str() : nullptr, loan.Object(),
                                            registered.userData);
}

}  // namespace simulator
