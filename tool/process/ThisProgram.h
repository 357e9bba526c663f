#pragma once

#include <filesystem>

namespace tool {

// The file of the program that runs.
std::filesystem::path PathOfThisProgram();

// Where this package, or this build, keeps the DLL: `candidates` are folders relative to the program's own, and the
// first one that has it is taken. Throws std::runtime_error when none has it.
std::filesystem::path FindDll(const wchar_t* name, std::initializer_list<const wchar_t*> candidates);

}  // namespace tool
