#include "checking/CheckedTasks.h"

#include <algorithm>
#include <initializer_list>
#include <string>

#include "checking/Buffers.h"
#include "checking/Callback.h"
#include "checking/Findings.h"
#include "checking/LentTexts.h"
#include "checking/Tasks.h"

namespace checking {

using VsKitMsgbus::lpc_buffer;

namespace {

// A module's visitor, during one IterateSettings.
class CheckedVisitor final : public VsKitMsgbus::INYTaskEnforcer::ITaskBag::ISettingVisitor {
public:
    CheckedVisitor(const std::string& id, ISettingVisitor* moduleVisitor)
        : productId(id), texts(id, "VisitSetting"), visitor(moduleVisitor) {}

    void BeginSettings() override {}
    void VisitSetting(const wchar_t* section, const wchar_t* key, const wchar_t* value) override {
        const Scope scope("VisitSetting", productId, [&](TraceArguments& arguments) {
            arguments.Add("section", section).Add("key", key).Add("value", value);
        });
        const wchar_t* const copies[] = {texts.Copy(section), texts.Copy(key), texts.Copy(value)};
        CallTelling(productId, "VisitSetting", [&] { visitor->VisitSetting(copies[0], copies[1], copies[2]); });
        texts.Forget();
    }

private:
    const std::string& productId;
    LentTexts texts;
    ISettingVisitor* const visitor;
};

// Inside the scope of ExecuteTask.
int32_t LookAtFailureInside(const std::string& productId, int32_t answer) {
    const Scope* const scope = Scope::Innermost();
    if (answer == VsKitMsgbus::INYTaskEnforcer::Succeeded && scope != nullptr && scope->FailedInside() != nullptr) {
        Report(Rule::FailureIgnored, productId, {scope->FailedInside(), std::to_string(scope->AnswerOfFailedInside())});
    }
    return answer;
}

bool IsOneOf(int32_t status, std::initializer_list<int32_t> known) {
    return std::find(known.begin(), known.end(), status) != known.end();
}

}  // namespace

size_t CheckedTaskBag::CountEntries() {
    ITaskBag* const bag = Use("CountEntries");
    return bag != nullptr ? bag->CountEntries() : 0;
}

int32_t CheckedTaskBag::IterateSettings(ISettingVisitor* visitor, const wchar_t* section) {
    ITaskBag* const bag = Use("IterateSettings");
    if (bag == nullptr || visitor == nullptr) {
        return bag != nullptr ? bag->IterateSettings(visitor, section) : 0;
    }
    CheckedVisitor checked(ProductId(), visitor);
    return bag->IterateSettings(&checked, section);
}

bool CheckedTaskBag::GetBoolean(const wchar_t* section, const wchar_t* name, bool* value) {
    ITaskBag* const bag = Use("GetBoolean");
    return bag != nullptr && bag->GetBoolean(section, name, value);
}

bool CheckedTaskBag::GetText(const wchar_t* section, const wchar_t* name, lpc_buffer* value) {
    ITaskBag* const bag = Use("GetText");
    return bag != nullptr && CallWithBuffer("GetText", value, [&] { return bag->GetText(section, name, value); });
}

bool CheckedTaskBag::GetInteger(const wchar_t* section, const wchar_t* name, int32_t* value) {
    ITaskBag* const bag = Use("GetInteger");
    return bag != nullptr && bag->GetInteger(section, name, value);
}

bool CheckedTaskBag::GetTaskName(lpc_buffer* name) {
    ITaskBag* const bag = Use("GetTaskName");
    return bag != nullptr && CallWithBuffer("GetTaskName", name, [&] { return bag->GetTaskName(name); });
}

int32_t CheckedTasks::CallWithTask(const char* function, Operation operation, const wchar_t* taskId, ITaskBag* bag) {
    const Loan<CheckedTaskBag> loan(bag, NarrowId(), function);
    LentTexts texts(NarrowId(), function);
    const wchar_t* const lentId = texts.Copy(taskId);
    return CallRegistered(
        *this, function,
        [&] {
            const int32_t answer = (enforcer->*operation)(lentId, loan.Get());
            return operation == &INYTaskEnforcer::ExecuteTask ? LookAtFailureInside(NarrowId(), answer) : answer;
        },
        [&](TraceArguments& arguments) { arguments.Add("task", taskId); });
}

int32_t CheckedTasks::ExecuteTask(const wchar_t* taskId, ITaskBag* bag) {
    int32_t answer = Failed;
    NoteTaskBegun(taskId, NarrowId());
    try {
        answer = CallWithTask("ExecuteTask", &INYTaskEnforcer::ExecuteTask, taskId, bag);
    } catch (...) {
        NoteTaskEnded(taskId);
        throw;
    }
    if (IsOneOf(answer, {Failed, Succeeded})) {
        NoteTaskEnded(taskId);
        return answer;
    }
    NoteTaskGoesOn(taskId);
    if (answer != NothingDecided) {
        Report(Rule::TaskAnswer, NarrowId(), {std::to_string(answer)});
    }
    return answer;
}

int32_t CheckedTasks::UpdateTaskStatus(const wchar_t* taskId, ITaskBag* bag) {
    const int32_t answer = CallWithTask("UpdateTaskStatus", &INYTaskEnforcer::UpdateTaskStatus, taskId, bag);
    if (!IsOneOf(answer, {NothingDecided, Failed, Succeeded})) {
        Report(Rule::TaskStateAnswer, NarrowId(), {std::to_string(answer)});
    }
    return answer;
}

int32_t CheckedTasks::StopTask(const wchar_t* taskId, ITaskBag* bag) {
    NoteTaskEnded(taskId);
    return CallWithTask("StopTask", &INYTaskEnforcer::StopTask, taskId, bag);
}

int32_t CheckedTasks::RemoveTask(const wchar_t* taskId, ITaskBag* bag) {
    NoteTaskEnded(taskId);
    return CallWithTask("RemoveTask", &INYTaskEnforcer::RemoveTask, taskId, bag);
}

void CheckedTasks::FreeCookie(void* cookie) {
    CallRegistered(*this, "FreeCookie", [&] { enforcer->FreeCookie(cookie); });
}

}  // namespace checking
