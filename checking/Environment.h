// The settings of the checks, read from the process's environment variables.
#pragma once

#include <string>

namespace checking {

// The variable's text; empty when it is not set.
std::wstring TextFromEnvironment(const wchar_t* name);

// The variable's number; `otherwise` when it is not set.
unsigned long NumberFromEnvironment(const char* name, unsigned long otherwise) noexcept;

}  // namespace checking
