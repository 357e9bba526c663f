#pragma once

#include <string>
#include <string_view>

#include "tool/timeline/Record.h"
#include "tool/timeline/Summary.h"

namespace tool {

// The page that shows a record, as one HTML file in UTF-8 that needs no other. `title` is the trace's file name.
std::string MakePage(std::string_view title, const Record& record, const Summary& summary);

}  // namespace tool
