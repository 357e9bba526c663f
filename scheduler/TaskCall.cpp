#include "scheduler/TaskCall.h"

#include "scheduler/AgentTask.h"
#include "scheduler/CTaskBag.h"
#include "scheduler/TaskEnforcerTable.h"
#include "values/AgentException.h"
#include "values/UnloggedText.h"

namespace bridge {

using VsKit::CUniStream;

TaskCall::TaskCall(const std::string& product, ny_task_t* agentTask, const wchar_t* failureHead,
                   const LibrariesInUse* inUse)
    : productId(product, inUse),
      taskId(TaskId(agentTask), inUse),
      task(agentTask),
      failure(failureHead),
      libraries(inUse) {}

TaskCall::Outcome TaskCall::AskModule(Operation operation) const noexcept {
    try {
        return {false, AskEnforcer(operation)};
    } catch (const AgentException& thrown) {
        // Spelled like this: products search for it.
        ComposeUnloggedAbout(failure, [&](CUniStream& text) { text << L", excpetion [" << thrown.Code() << L"]"; });
    } catch (...) {
        ComposeUnloggedAbout(failure, [](CUniStream& text) { text << L" due to unknown exception"; });
    }
    return {true, std::nullopt};
}

std::optional<int32_t> TaskCall::AskEnforcer(Operation operation) const {
    std::optional<int32_t> answer;
    TaskEnforcerTable().With(productId.View(), [&](const TaskEnforcerRecord& record, auto&& /*wasRemoved*/) {
        CTaskBag bag(task, record.context, libraries);
        answer = record.enforcer.Call(operation, taskId.Get(), &bag);
    });
    return answer;
}

void TaskCall::ComposeText(const wchar_t* head) const noexcept {
    ComposeUnloggedAbout(head, [](CUniStream&) {});
}

template <class Compose>
void TaskCall::ComposeUnloggedAbout(const wchar_t* head, Compose&& compose) const noexcept {
    ComposeUnlogged([&](CUniStream& text) {
        text << head << taskId.View() << L" for product id " << productId.View();
        compose(text);
    });
}

}  // namespace bridge
