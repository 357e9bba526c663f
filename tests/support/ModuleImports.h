#pragma once

#include <string>
#include <vector>

// The functions that a loaded library imports from others, by name.
struct ModuleImport {
    std::string function;
    void** slot;  // where the library's code looks for the function; to be written by SetImport
};

// All imports of the library with that file name. Throws std::logic_error when it is not loaded.
std::vector<ModuleImport> ImportsOf(const char* library);
