#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "VsMsgbus/TaskEnforcer.h"
#include "support/HeldLocks.h"
#include "support/LineLog.h"
#include "support/ModuleRegistration.h"
#include "support/Text.h"

using ITaskBag = VsKitMsgbus::INYTaskEnforcer::ITaskBag;

// A module's task enforcer that notes how it is called, each as "<operation> <task id>", and does what the test wants.
class TaskEnforcer final : public VsKitMsgbus::INYTaskEnforcer {
public:
    using Operation = std::function<int32_t(ITaskBag&)>;

    explicit TaskEnforcer(Operation whatToExecute = {}) : execute(std::move(whatToExecute)) {}

    int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) override { return Run("execute", execute, taskId, bag); }
    int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* bag) override {
        return Run("update", updateStatus, taskId, bag);
    }
    int32_t StopTask(const wchar_t* taskId, ITaskBag* bag) override { return Run("stop", stop, taskId, bag); }
    int32_t RemoveTask(const wchar_t* taskId, ITaskBag* bag) override { return Run("remove", remove, taskId, bag); }
    void FreeCookie(void* cookie) override {
        ExpectNoLockHeld("FreeCookie");
        log.Add("free cookie " + std::to_string(reinterpret_cast<uintptr_t>(cookie)));
        if (freeCookie) {
            freeCookie();
        }
    }

    // An operation that is not given answers Succeeded.
    Operation execute;
    Operation updateStatus;
    Operation stop;
    Operation remove;
    std::function<void()> freeCookie;
    LineLog log;

private:
    int32_t Run(const char* name, const Operation& operation, const wchar_t* taskId, ITaskBag* bag) {
        ExpectNoLockHeld(name);
        log.Add(std::string(name) + " " + Narrow(taskId));
        return operation ? operation(*bag) : Succeeded;
    }
};

using TaskEnforcerRegistration =
    ModuleRegistration<TaskEnforcer, &VsKitMsgbusSetTaskEnforcer, &VsKitMsgbusRemoveTaskEnforcer>;

// Notes each setting that it is shown as "<section>:<key>=<value>".
class SettingVisitor final : public ITaskBag::ISettingVisitor {
public:
    void BeginSettings() override { log.Add("begin"); }
    void VisitSetting(const wchar_t* section, const wchar_t* key, const wchar_t* value) override {
        log.Add(Narrow(section) + ":" + Narrow(key) + "=" + Narrow(value));
        if (onSetting) {
            onSetting();
        }
    }

    std::function<void()> onSetting;
    LineLog log;
};

// The text of a buffer, which is released here; "(kind <n>)" when it is not wide text.
inline std::string TakeText(VsKitMsgbus::lpc_buffer& buffer) {
    std::string text = "(kind " + std::to_string(buffer.kind) + ")";
    if (buffer.kind == VsKitMsgbus::lpc_buffer::WideText) {
        text = Narrow(std::wstring_view(static_cast<const wchar_t*>(buffer.data), buffer.length));
        EXPECT_EQ(static_cast<const wchar_t*>(buffer.data)[buffer.length], L'\0');
    }
    buffer.Release();
    return text;
}
