#pragma once

#include <optional>
#include <string>

#include "tool/doctor/Check.h"

namespace tool::doctor {

struct RuntimePathResult {
    Checks checks;
    // The folder in which the bridge looks for the agent's libraries, in the system's code page, as the bridge has it.
    // None when the bridge has no folder, or when the folder is not there.
    std::optional<std::string> folder;
};

// Checks the runtime path in both views of the registry, its folder, and the users who may write either.
RuntimePathResult CheckRuntimePath();

}  // namespace tool::doctor
