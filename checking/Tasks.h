// The tasks whose execution has begun, until their end is known.
#pragma once

#include <cstdint>
#include <string>

namespace checking {

void NoteTaskBegun(const wchar_t* taskId, const std::string& productId);
// Its execution has answered that it goes on.
void NoteTaskGoesOn(const wchar_t* taskId);
// It is over. Whether its end was not known before.
bool NoteTaskEnded(const wchar_t* taskId);
// Somebody said how it stands. Whether its end was not known before.
bool NoteTaskStatus(const wchar_t* taskId, int32_t status);
// Reports the product's tasks that went on and of which nothing was reported. An execution that has not answered yet is
// none of them.
void ReportTasksWithoutEnd(const std::string& productId);

}  // namespace checking
