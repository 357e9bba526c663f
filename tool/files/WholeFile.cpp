#include "tool/files/WholeFile.h"

#include <fstream>

namespace tool {

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file.is_open()) {
        return std::nullopt;
    }
    const std::streamoff size = file.tellg();
    if (size < 0) {
        return std::nullopt;
    }
    std::string content(static_cast<size_t>(size), '\0');
    file.seekg(0);
    file.read(content.data(), size);
    // The file may have become shorter since its size was read.
    content.resize(static_cast<size_t>(file.gcount()));
    return content;
}

}  // namespace tool
