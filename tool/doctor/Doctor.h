#pragma once

#include "tool/ExitStatus.h"

namespace CLI {
class App;
}

namespace tool {

// vsmsgbus doctor: why is a module not asked, why does the bridge not start? Adds the sub-command, and those that it
// runs itself in processes of their own, which are not shown to users.
void AddDoctor(CLI::App& program, ExitStatus& status);

}  // namespace tool
