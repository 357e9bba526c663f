#pragma once

#include <string_view>

namespace tool {

// The files of tool/timeline/page as one page, without a record in it; the build puts it into the program.
std::string_view PageWithoutRecord();

}  // namespace tool
