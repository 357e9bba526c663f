#pragma once

#include <string>
#include <string_view>

namespace tool {

// Escapes the text for XML and HTML, between tags and in quoted attributes. Characters that XML does not have become
// question marks.
std::string EscapeXml(std::string_view text);

}  // namespace tool
