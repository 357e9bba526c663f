#pragma once

#include <string>

namespace checking {

// Tells a finding: to the debugger, to standard error, and to the file that the environment's VSMSGBUS_CHECK_FILE
// names, which is added to. Then, if it may, stops in the debugger when VSMSGBUS_CHECK is "break", and ends the process
// with exit code 3 when it is "abort". `message` is UTF-8 without a line end.
void Tell(const std::string& message, bool mayStop) noexcept;

}  // namespace checking
