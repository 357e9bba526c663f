#pragma once

#include <string>
#include <string_view>

namespace tool {

// The text as it stands in XML, and in HTML, between tags and in quoted attributes. Characters that XML does not have
// become question marks.
std::string Xml(std::string_view text);

}  // namespace tool
