#pragma once

#include <optional>
#include <string>

#include "tool/doctor/Check.h"

namespace tool::doctor {

struct RuntimePathResult {
    Checks checks;
    // The folder in which the bridge looks for the agent's libraries, in the system's code page, as the bridge has it.
    // None when it has none, or none that is there.
    std::optional<std::string> folder;
};

// The runtime path in both views of the registry, its folder, and who may write either.
RuntimePathResult CheckRuntimePath();

}  // namespace tool::doctor
