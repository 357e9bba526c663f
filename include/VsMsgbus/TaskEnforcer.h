/// @file
/// Scheduled tasks: how a module runs, stops, removes and re-queries the tasks that the agent's scheduler has for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "VsMsgbus/LpcBuffer.h"

namespace VsKitMsgbus {

/// What a module implements to be given tasks. The module owns it and keeps it alive until
/// VsKitMsgbusRemoveTaskEnforcer has returned. The order of the slots is the contract.
///
/// The mask that the product gives to VsMsgbusEntry has to name VsMsgbusServiceTask: only then is the product
/// registered with the agent for this service.
///
/// Slots 1 to 4 are called on threads of the agent's, which wait for them, and with no lock of the bridge's held. They
/// run side by side: a task is stopped while it is executed, and several tasks of one product may run at once. `taskId`
/// is zero-terminated UTF-16 and, like `bag`, valid during the call. What they throw counts as a failure and goes no
/// further.
class INYTaskEnforcer {
public:
    class ITaskBag;

    /// How a task's execution ended. The agent is told 3 and 4 as they are, and 2 for every other answer: 0 and 1
    /// are no success. UpdateTaskStatus and UpdateMsgbusTaskStatus tell other numbers as they are, see there.
    enum : int32_t {
        NothingDecided = 2,  ///< the task goes on, or nobody can say
        Failed = 3,          ///< the task has failed
        Succeeded = 4,       ///< the task is done
        AgentDefined = 6,    ///< what it means is the agent's; UpdateMsgbusTaskStatus passes it on
    };

    /// Slot 1: Execute the task. Answer Succeeded, Failed, or anything else when the task goes on after this call: its
    /// end is then reported with UpdateMsgbusTaskStatus. An execution that throws has failed.
    virtual int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) = 0;

    /// Slot 2: Say how the task stands: the agent is told 2 and 4 as they are, and 3 for every other answer.
    virtual int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* bag) = 0;

    /// Slot 3: Stop the task. The agent is told nothing of the answer.
    virtual int32_t StopTask(const wchar_t* taskId, ITaskBag* bag) = 0;

    /// Slot 4: The task exists no more. The agent is told nothing of the answer.
    virtual int32_t RemoveTask(const wchar_t* taskId, ITaskBag* bag) = 0;

    /// Slot 5: Free a cookie that the module handed out. Called within VsKitMsgbusFreeTaskCookie, on its thread.
    virtual void FreeCookie(void* cookie) = 0;

    /// One task as it is during one call of slots 1 to 4: read it there, on any thread that the call waits for, and do
    /// not keep it. It belongs to the bridge and cannot be deleted. Every operation reads from the agent anew; none
    /// throws.
    ///
    /// Texts are given out as an lpc_buffer and not as std::wstring, because the memory and the layout of a standard
    /// string belong to the C++ library of one side; Text and TaskName make a std::wstring of them on the module's.
    /// Give a buffer that is empty or was filled before: what it holds is freed first. The text comes as WideText with
    /// its whole length, zeros in it included; free it with Release.
    ///
    /// Slots 2 to 4 read one setting. Each first sets `value` to false, 0 or empty. False, with that value, when an
    /// argument is null or the section empty (the agent is then not asked), and when the agent does not give the
    /// setting as a text.
    class ITaskBag {
    public:
        /// What a module implements to be shown settings. The module owns it; it is called within IterateSettings, on
        /// the calling thread.
        class ISettingVisitor {
        public:
            /// Slot 1: Reserved for what comes before the settings; the bridge never calls it.
            virtual void BeginSettings() = 0;

            /// Slot 2: One setting: the section that was asked for, the setting's key and its value, in this order; all
            /// zero-terminated UTF-16, valid during the call. What it throws ends the walk and goes no further.
            virtual void VisitSetting(const wchar_t* section, const wchar_t* key, const wchar_t* value) = 0;

        protected:
            ~ISettingVisitor() = default;
        };

        /// Slot 0: How many entries the task's table of settings has: one for each section. 0 also when the agent does
        /// not give the table.
        virtual size_t CountEntries() = 0;

        /// Slot 1: Shows the visitor every setting of a section, in the agent's order.
        ///
        /// @returns 1 when all were shown. 0 when visitor or section is null or the section empty; 0 as well when the
        /// agent does not give the section or a value that is a text, or the visitor throws: what comes before was then
        /// shown.
        virtual int32_t IterateSettings(ISettingVisitor* visitor, const wchar_t* section) = 0;

        /// Slot 2: True, with `value` true, for a text TRUE and for a text FALSE, in any letter case; false, with
        /// `value` false, for every other text. That FALSE reads as true is meant: modules rely on it.
        virtual bool GetBoolean(const wchar_t* section, const wchar_t* name, bool* value) = 0;

        /// Slot 3: The setting's text.
        virtual bool GetText(const wchar_t* section, const wchar_t* name, lpc_buffer* value) = 0;

        /// Slot 4: The decimal number that the text begins with, after blanks and with or without a sign; what follows
        /// it does not matter. A text without a number reads as 0, which is true as well. A number that 32 bits do not
        /// hold reads as the greatest or least one that they do.
        virtual bool GetInteger(const wchar_t* section, const wchar_t* name, int32_t* value) = 0;

        /// Slot 5: The task's name, empty when the task has none. False, with `name` empty, when `name` is null or the
        /// agent does not give it.
        virtual bool GetTaskName(lpc_buffer* name) = 0;

        /// The setting's text as GetText gives it, in a string of the module's own C++ library; empty when GetText
        /// answers false.
        std::wstring Text(const wchar_t* section, const wchar_t* name) {
            lpc_buffer text;
            GetText(section, name, &text);
            return TakeWideText(text);
        }

        /// The task's name as GetTaskName gives it, in a string of the module's own C++ library.
        std::wstring TaskName() {
            lpc_buffer name;
            GetTaskName(&name);
            return TakeWideText(name);
        }

    protected:
        ~ITaskBag() = default;
    };

protected:
    ~INYTaskEnforcer() = default;
};

}  // namespace VsKitMsgbus

extern "C" {

/// Registers the module's task enforcer under a product id, before or after VsMsgbusEntry and whether or not the agent
/// is there. Any thread.
///
/// @param productId  zero-terminated UTF-16, compared exactly; the id given to VsMsgbusEntry, whose mask has to name
///                   VsMsgbusServiceTask for the agent to give the product tasks.
/// @param enforcer   not owned; see INYTaskEnforcer.
/// @param context    a value of the module's that is kept beside the enforcer; the bridge does not look into it.
///
/// @returns true when the id has an enforcer afterwards: the first registration of an id stays in force, a second one
/// changes nothing and is answered true. The memory of such a second registration is not given back. False when
/// productId or enforcer is null or memory ran out.
bool VsKitMsgbusSetTaskEnforcer(const wchar_t* productId, VsKitMsgbus::INYTaskEnforcer* enforcer,
                                void* context) noexcept;

/// Takes the enforcer of a product id away. Any thread. No call enters the enforcer any more; calls that run on other
/// threads are waited for, at most 15 seconds, so that the module may free it and unload: stop your tasks first. From
/// inside the enforcer's own callback this returns at once. VsMsgbusExit does not take the enforcer away.
///
/// Always returns true, also for null, for an id that has no enforcer, and after 15 seconds with a thread still inside:
/// convention 6 of VsMsgbus.h says how to know.
bool VsKitMsgbusRemoveTaskEnforcer(const wchar_t* productId) noexcept;

/// Hands a cookie to FreeCookie of the enforcer that is registered for the product id, within this call. A cookie is
/// whatever the module made it; the bridge does not look into it. For null and for an id that has no enforcer nothing
/// happens, and the cookie is not freed. Any thread; no lock of the bridge's is held meanwhile.
void VsKitMsgbusFreeTaskCookie(const wchar_t* productId, void* cookie) noexcept;

/// Tells the agent how a task stands. Any thread, also from inside the enforcer's callbacks.
///
/// @param taskId  zero-terminated UTF-16; of each unit the low byte alone goes to the agent.
/// @param status  NothingDecided, Succeeded and AgentDefined are told as they are, every other value as Failed: a
///                percentage is no status.
///
/// Nothing happens when taskId is null, when no product is in the bridge, and while the agent is not there; what the
/// agent answers is not told. Waits for the agent's answer alone.
void UpdateMsgbusTaskStatus(const wchar_t* taskId, int status) noexcept;

}  // extern "C"
