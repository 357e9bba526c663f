#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/timeline/TraceEvent.h"

namespace tool {

// The content of a file of the Trace Event format.
struct Trace {
    std::vector<TraceEvent> events;  // in the order of the file
    bool isComplete = false;         // whether the file has its end: one that a crash has cut has none
    std::optional<size_t> brokenLine;
};

// Reads a trace: an array of events, or an object with one called "traceEvents". The array may lack its end, and one
// event may be broken, as a crash leaves it: at the end or, where the newest events have taken the place of the oldest,
// in the middle. `tell(share)` is called now and then with how much of the text is read, from 0 to 1.
//
// Throws std::runtime_error with line, column and reason for a text that is no trace.
Trace ReadTrace(std::string_view text, const std::function<void(double share)>& tell);

}  // namespace tool
