#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tool {

// All bytes of the file; none when it cannot be opened or read. Others may be writing it.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

}  // namespace tool
