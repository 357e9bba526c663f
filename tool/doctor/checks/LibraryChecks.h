#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/doctor/Check.h"

namespace tool::doctor {

struct LibraryResult {
    Checks checks;
    std::vector<std::string> usable;  // the files that can be loaded as far as the files say, as in AgentLibraries
};

// The files of the agent's four libraries in the folder; nothing is loaded. Without a folder nothing is reached.
LibraryResult CheckLibraries(const std::optional<std::string>& ansiFolder);

}  // namespace tool::doctor
