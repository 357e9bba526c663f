#pragma once

#include <CLI/CLI.hpp>

#include "tool/ExitStatus.h"

namespace tool::judge {

// Adds the sub-command `judge`.
void AddJudge(CLI::App& program, ExitStatus& status);

}  // namespace tool::judge
