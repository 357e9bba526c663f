#include "tool/text/Xml.h"

namespace tool {

std::string EscapeXml(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            case '\t':
            case '\n':
            case '\r': escaped += character; break;
            default: escaped += static_cast<unsigned char>(character) < 0x20 ? '?' : character;
        }
    }
    return escaped;
}

}  // namespace tool
