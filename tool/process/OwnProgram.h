#pragma once

#include <filesystem>

namespace tool {

// The file of this program.
std::filesystem::path OwnProgram();

}  // namespace tool
