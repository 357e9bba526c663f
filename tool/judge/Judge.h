#pragma once

#include "tool/ExitStatus.h"

namespace CLI {
class App;
}

namespace tool::judge {

// Adds the sub-command `judge`.
void AddJudge(CLI::App& program, ExitStatus& status);

}  // namespace tool::judge
