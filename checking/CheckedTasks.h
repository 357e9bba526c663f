#pragma once

#include "VsMsgbus/TaskEnforcer.h"
#include "checking/Lent.h"
#include "checking/Registration.h"

namespace checking {

// The bag that the bridge lends a module's enforcer, to read one task from.
class CheckedTaskBag final : public VsKitMsgbus::INYTaskEnforcer::ITaskBag,
                             public Lent<VsKitMsgbus::INYTaskEnforcer::ITaskBag, LentFor::AnyThread> {
public:
    size_t CountEntries() override;
    int32_t IterateSettings(ISettingVisitor* visitor, const wchar_t* section) override;
    bool GetBoolean(const wchar_t* section, const wchar_t* name, bool* value) override;
    bool GetText(const wchar_t* section, const wchar_t* name, VsKitMsgbus::lpc_buffer* value) override;
    bool GetInteger(const wchar_t* section, const wchar_t* name, int32_t* value) override;
    bool GetTaskName(VsKitMsgbus::lpc_buffer* name) override;
};

// A module's task enforcer.
class CheckedTasks final : public VsKitMsgbus::INYTaskEnforcer, public Registration {
public:
    CheckedTasks(const wchar_t* productId, VsKitMsgbus::INYTaskEnforcer* moduleEnforcer)
        : Registration(services[Task], productId, moduleEnforcer), enforcer(moduleEnforcer) {}

    int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t StopTask(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t RemoveTask(const wchar_t* taskId, ITaskBag* bag) override;
    void FreeCookie(void* cookie) override;

private:
    using Operation = int32_t (VsKitMsgbus::INYTaskEnforcer::*)(const wchar_t* taskId, ITaskBag* bag);
    int32_t CallWithTask(const char* function, Operation operation, const wchar_t* taskId, ITaskBag* bag);

    VsKitMsgbus::INYTaskEnforcer* const enforcer;
};

}  // namespace checking
