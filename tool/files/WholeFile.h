#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// All bytes of the file; none when it cannot be opened or read. Others may be writing it.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

// The file has this text and nothing else then. Raises std::runtime_error, which names it, when it cannot be written.
void WriteWholeFile(const std::filesystem::path& path, std::string_view text);

}  // namespace tool
