#include "checking/Tasks.h"

#include <map>
#include <vector>

#include "VsMsgbus/TaskEnforcer.h"
#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/StateLock.h"
#include "checking/Texts.h"

namespace checking {

namespace {

struct BegunTask {
    std::string productId;
    bool goesOn = false;
    bool isHeardOf = false;  // or was told of here
};

struct TaskTable {
    StateLock lock;
    std::map<std::wstring, BegunTask> begun;
};

TaskTable& Tasks() {
    static bridge::NoDestroyAtExit<TaskTable> table;
    return *table;
}

}  // namespace

void NoteTaskBegun(const wchar_t* taskId, const std::string& productId) {
    const Guard guard(Tasks().lock);
    Tasks().begun.insert_or_assign(taskId, BegunTask{productId});
}

void NoteTaskGoesOn(const wchar_t* taskId) {
    const Guard guard(Tasks().lock);
    if (const auto task = Tasks().begun.find(taskId); task != Tasks().begun.end()) {
        task->second.goesOn = true;
    }
}

bool NoteTaskEnded(const wchar_t* taskId) {
    const Guard guard(Tasks().lock);
    return Tasks().begun.erase(taskId) != 0;
}

bool NoteTaskStatus(const wchar_t* taskId, int32_t status) {
    using VsKitMsgbus::INYTaskEnforcer;
    if (status == INYTaskEnforcer::Failed || status == INYTaskEnforcer::Succeeded) {
        return NoteTaskEnded(taskId);
    }
    const Guard guard(Tasks().lock);
    const auto task = Tasks().begun.find(taskId);
    if (task == Tasks().begun.end()) {
        return false;
    }
    task->second.isHeardOf |= status != INYTaskEnforcer::NothingDecided;
    return true;
}

void ReportTasksWithoutEnd(const std::string& productId) {
    std::vector<std::wstring> left;
    {
        const Guard guard(Tasks().lock);
        for (auto& [id, task] : Tasks().begun) {
            if (task.productId == productId && task.goesOn && !task.isHeardOf) {
                left.push_back(id);
                task.isHeardOf = true;
            }
        }
    }
    for (const std::wstring& task : left) {
        Report(Rule::TaskWithoutEnd, productId, {Narrow(task)});
    }
}

}  // namespace checking
