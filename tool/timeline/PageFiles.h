// The files of tool/timeline/page, which the build puts into the program.
#pragma once

#include <string_view>

namespace tool {

std::string_view PageHtml();
std::string_view PageCss();
std::string_view PageJs();

}  // namespace tool
