// Texts of this program are UTF-8; file names and the system's texts are UTF-16.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tool {

// Bytes that are no UTF-8 become U+FFFD.
std::filesystem::path PathOf(std::string_view utf8);
std::string Utf8(const std::filesystem::path& path);

}  // namespace tool
