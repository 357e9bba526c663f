#include "tool/output/Wrap.h"

#include <algorithm>

namespace {

// Where the character of that index begins, or the text's size when it has no more characters than that.
size_t BeginOf(std::string_view text, size_t character) {
    size_t index = 0;
    for (const char byte : text) {
        const bool isContinuation = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
        if (!isContinuation && character-- == 0) {
            break;
        }
        ++index;
    }
    return index;
}

size_t CountLeadingSpaces(std::string_view text) {
    return std::min(text.find_first_not_of(' '), text.size());
}

}  // namespace

std::vector<std::string> Wrap(std::string_view text, size_t width) {
    const std::string indentOfLater(CountLeadingSpaces(text) + 4, ' ');
    std::string indent;
    std::vector<std::string> lines;
    for (;;) {
        const size_t most = BeginOf(text, width - indent.size());
        if (most == text.size()) {
            lines.push_back(indent + std::string(text));
            return lines;
        }
        const size_t space = text.rfind(' ', most);
        const bool isBetweenWords = space != std::string_view::npos && space > CountLeadingSpaces(text);
        lines.push_back(indent + std::string(text.substr(0, isBetweenWords ? space : most)));
        text.remove_prefix(isBetweenWords ? space + 1 : most);
        indent = indentOfLater;
    }
}
