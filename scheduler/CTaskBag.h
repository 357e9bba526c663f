#pragma once

#include "VsMsgbus/TaskEnforcer.h"
#include "agent/ny_agent.h"
#include "dispatcher/LibrariesInUse.h"
#include "values/ModuleInterface.h"

namespace bridge {

// The bag that a module is handed to read one task. It lives on the stack of one call. Failures of the agent's become
// texts that go to no log, see values/UnloggedText.h.
class CTaskBag final : public VsKitMsgbus::INYTaskEnforcer::ITaskBag {
public:
    // `agentTask` is borrowed from the agent; `registeredContext` is what the module registered beside its enforcer;
    // `inUse` are the libraries that the task comes from, null for those that are open.
    CTaskBag(ny_task_t* agentTask, void* registeredContext, const LibrariesInUse* inUse = nullptr) noexcept
        : task(agentTask), context(registeredContext), libraries(inUse) {}

    size_t CountEntries() noexcept override;
    int32_t IterateSettings(ISettingVisitor* visitor, const wchar_t* section) noexcept override;
    bool GetBoolean(const wchar_t* section, const wchar_t* name, bool* value) noexcept override;
    bool GetText(const wchar_t* section, const wchar_t* name, VsKitMsgbus::lpc_buffer* value) noexcept override;
    bool GetInteger(const wchar_t* section, const wchar_t* name, int32_t* value) noexcept override;
    bool GetTaskName(VsKitMsgbus::lpc_buffer* name) noexcept override;

    void* Context() const noexcept { return context; }

private:
    // Raises the agent exception.
    void ShowSettings(ModuleInterface<ISettingVisitor> visitor, const wchar_t* section) const;

    // `read(variant)` of the setting's value; false, and the text dropped, when the agent does not give it.
    template <class Read>
    bool ReadSetting(const wchar_t* section, const wchar_t* name, Read&& read) const noexcept;

    ny_task_t* const task;
    void* const context;
    const LibrariesInUse* const libraries;
};

}  // namespace bridge
