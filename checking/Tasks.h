// The tasks whose execution has begun, until their end is known.
#pragma once

#include <cstdint>
#include <string>

namespace checking {

void NoteTaskBegun(const wchar_t* taskId, const std::string& productId);
// The module's ExecuteTask has answered that the task goes on.
void NoteTaskGoesOn(const wchar_t* taskId);
// The task is over. True when its end was not known before.
bool NoteTaskEnded(const wchar_t* taskId);
// A status of the task was reported. True when its end was not known before.
bool NoteTaskStatus(const wchar_t* taskId, int32_t status);
// Reports the product's tasks that went on and of which nothing was reported. A task whose ExecuteTask has not returned
// yet is not reported.
void ReportTasksWithoutEnd(const std::string& productId);

}  // namespace checking
