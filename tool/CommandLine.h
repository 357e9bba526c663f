#pragma once

#include <string>
#include <vector>

namespace tool {

// The arguments of this process's command line as UTF-8, the program's name first: those that main is given are in the
// system's code page.
std::vector<std::string> CommandLine();

}  // namespace tool
