// The accessors of a task object of the agent's. Each function raises corvane::ny::utils::exception with the accessor's
// code, with taskAccessorMissing when the object lacks the accessor, and with NY_INVALID_ARGUMENT when there is no
// object. The object is borrowed from the agent and valid during the callback that it came with.
#pragma once

#include <cstdint>
#include <string>

#include "agent/ny_agent.h"
#include "values/AgentHandle.h"

namespace bridge {

inline constexpr int32_t taskAccessorMissing = 2;  // the code of the exception for an accessor that is null

// UTF-8; empty when the task has none.
std::string TaskId(ny_task_t* task);
std::string TaskName(ny_task_t* task);

// The values of the functions below are released by the libraries in `inUse`, which the task comes from; with null, by
// the libraries that are open now.

// One setting's value; both names in UTF-8.
VariantOwner TaskSetting(ny_task_t* task, const std::string& section, const std::string& name,
                         const LibrariesInUse* inUse);
// A table of the section's settings: name to value.
VariantOwner TaskSection(ny_task_t* task, const std::string& section, const LibrariesInUse* inUse);
// A table with one key for each section.
VariantOwner TaskSettings(ny_task_t* task, const LibrariesInUse* inUse);

}  // namespace bridge
