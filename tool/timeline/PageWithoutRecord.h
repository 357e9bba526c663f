#pragma once

#include <string_view>

namespace tool {

// What stands in tool/timeline/page, as one page; the build puts it into the program.
std::string_view PageWithoutRecord();

}  // namespace tool
