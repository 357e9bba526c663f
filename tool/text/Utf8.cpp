#include "tool/text/Utf8.h"

#include "checking/Texts.h"

namespace tool {

std::filesystem::path PathOf(std::string_view utf8) {
    return {checking::Wide(utf8)};
}

std::string Utf8(const std::filesystem::path& path) {
    return checking::Narrow(path.wstring());
}

}  // namespace tool
