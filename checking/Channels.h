#pragma once

#include <string>

namespace checking {

// Tells a finding: to the debugger, to standard error, and to the file that the environment's VSMSGBUS_CHECK_FILE
// names, which is added to. Then, with VSMSGBUS_CHECK=break, stops in the debugger; with =abort, ends the process with
// exit code 3. `message` is UTF-8 without a line end.
void Tell(const std::string& message) noexcept;

// A number of the environment's; `otherwise` when there is none.
unsigned long NumberFromEnvironment(const char* name, unsigned long otherwise) noexcept;

}  // namespace checking
