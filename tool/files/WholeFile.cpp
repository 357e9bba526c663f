#include "tool/files/WholeFile.h"

#include <fstream>
#include <iterator>

namespace tool {

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        return std::nullopt;
    }
    std::string content{std::istreambuf_iterator<char>(file), {}};
    return file.bad() ? std::nullopt : std::optional(std::move(content));
}

}  // namespace tool
