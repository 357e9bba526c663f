// The tasks whose execution has begun, until their end is known.
#pragma once

#include <string>

namespace checking {

void NoteTaskBegun(const wchar_t* taskId, const std::string& productId);
// It is over, or somebody said how it stands.
void NoteTaskEnded(const wchar_t* taskId);
// Reports the product's tasks that went on and of which nothing was reported, and forgets them.
void ReportTasksWithoutEnd(const std::string& productId);

}  // namespace checking
