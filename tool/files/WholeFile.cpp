#include "tool/files/WholeFile.h"

#include <fstream>
#include <stdexcept>

#include "tool/text/Utf8.h"

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

void WriteWholeFile(const std::filesystem::path& path, std::string_view text) {
    std::ofstream file(path, std::ios::binary);
    if (!file.write(text.data(), static_cast<std::streamsize>(text.size())).flush()) {
        throw std::runtime_error(Utf8(path) + " cannot be written");
    }
}

}  // namespace tool
