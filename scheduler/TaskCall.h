#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "VsMsgbus/TaskEnforcer.h"
#include "agent/ny_agent.h"
#include "dispatcher/LibrariesInUse.h"
#include "values/WideText.h"

namespace bridge {

// One call from the agent about one task, on its way to the module that is registered for the product.
class TaskCall {
public:
    using Operation = int32_t (VsKitMsgbus::INYTaskEnforcer::*)(const wchar_t* taskId,
                                                                VsKitMsgbus::INYTaskEnforcer::ITaskBag* bag);

    // How the module answered the call.
    struct Outcome {
        bool hasFailed = false;         // the module threw
        std::optional<int32_t> answer;  // none when it has failed, and when no enforcer is registered
    };

    // Raises the agent exception when the task does not tell its id. `agentTask` is borrowed; `failureHead` begins the
    // texts of failures; `inUse` are the libraries that the task comes from.
    TaskCall(const std::string& product, ny_task_t* agentTask, const wchar_t* failureHead, const LibrariesInUse* inUse);

    // Calls the module's enforcer, with no lock held. A failure's text goes to no log, see UnloggedText.h.
    Outcome AskModule(Operation operation) const noexcept;

    // Composes a text of `head`, the task and the product, which goes to no log.
    void ComposeText(const wchar_t* head) const noexcept;
    void ComposeFailure() const noexcept { ComposeText(failure); }

private:
    std::optional<int32_t> AskEnforcer(Operation operation) const;
    template <class Compose>
    void ComposeUnloggedAbout(const wchar_t* head, Compose&& compose) const noexcept;

    const WideText productId;
    const WideText taskId;
    ny_task_t* const task;
    const wchar_t* const failure;
    const LibrariesInUse* const libraries;
};

}  // namespace bridge
