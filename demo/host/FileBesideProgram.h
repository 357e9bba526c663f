#pragma once

#include <string>

// The content of a file that stands beside the program. Throws std::runtime_error when it is not there.
std::string ReadFileBesideProgram(const char* name);
