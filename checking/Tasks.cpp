#include "checking/Tasks.h"

#include <map>
#include <vector>

#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/StateLock.h"
#include "checking/Texts.h"

namespace checking {

namespace {

struct TaskTable {
    StateLock lock;
    std::map<std::wstring, std::string> begun;  // the product of each task
};

TaskTable& Tasks() {
    static bridge::NoDestroyAtExit<TaskTable> table;
    return *table;
}

}  // namespace

void NoteTaskBegun(const wchar_t* taskId, const std::string& productId) {
    const Guard guard(Tasks().lock);
    Tasks().begun.insert_or_assign(taskId, productId);
}

void NoteTaskEnded(const wchar_t* taskId) {
    const Guard guard(Tasks().lock);
    Tasks().begun.erase(taskId);
}

void ReportTasksWithoutEnd(const std::string& productId) {
    std::vector<std::wstring> left;
    {
        const Guard guard(Tasks().lock);
        for (auto task = Tasks().begun.begin(); task != Tasks().begun.end();) {
            const bool isOfProduct = task->second == productId;
            if (isOfProduct) {
                left.push_back(task->first);
            }
            task = isOfProduct ? Tasks().begun.erase(task) : std::next(task);
        }
    }
    for (const std::wstring& task : left) {
        Report(Rule::TaskWithoutEnd, productId, {Narrow(task)});
    }
}

}  // namespace checking
