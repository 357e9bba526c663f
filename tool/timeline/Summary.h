#pragma once

#include <string>
#include <vector>

#include "tool/timeline/Record.h"

namespace tool {

// The events of a record that are worth a look, as indices.
struct Summary {
    std::vector<size_t> findings;  // of the checking bridge, in the order of time
    std::vector<size_t> notes;     // of the checking bridge: of the machine, no findings
    std::vector<size_t> failed;    // calls and callbacks whose answer says so, and what the agent refused; by time
    std::vector<size_t> slowest;   // 25 calls and callbacks at most, the longest first
};

Summary Summarise(const Record& record);

// For machines, as JSON: docs/TIMELINE.md says what stands in it.
std::string SummaryForMachines(const Record& record, const Summary& summary);

// Such as "12 events of 2 threads in 17.3 ms; 1 finding, 2 failed calls".
std::string SummaryLine(const Record& record, const Summary& summary);

// The finding's rule, product and place.
std::string FindingText(const Record& record, const RecordEvent& finding);

}  // namespace tool
