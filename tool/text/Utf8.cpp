#include "tool/text/Utf8.h"

namespace tool {

std::filesystem::path PathOf(std::string_view utf8) {
    return {std::u8string(utf8.begin(), utf8.end())};
}

std::string Utf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace tool
