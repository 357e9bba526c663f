#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tool/timeline/Meaning.h"
#include "tool/timeline/TraceReader.h"

namespace tool {

struct RecordThread {
    std::string process;
    std::string id;
    std::string name;  // empty when the trace has none
};

// A span from `begin` to `end`, or an instant. Times are microseconds since the record's begin.
struct RecordEvent {
    uint32_t thread = 0;  // an index
    Kind kind = Kind::Other;
    bool isInstant = false;
    bool isBeginKnown = true;  // otherwise it began before the record
    bool isEndKnown = true;    // otherwise it had not ended when the record ended
    uint32_t depth = 0;        // of a span: how many spans of its thread are around it
    std::string name;
    double begin = 0;
    double end = 0;
    nlohmann::ordered_json arguments;
    nlohmann::ordered_json answers;  // of a span: what its end adds
    std::string failure;             // empty when it did not fail
    std::optional<size_t> around;    // the innermost span around it: an index
};

// The spans and instants of a trace, ordered by their begin; those of one time from the outer to the inner.
struct Record {
    std::vector<RecordThread> threads;  // in the order of their first events
    std::vector<RecordEvent> events;
    double duration = 0;
    size_t leftOut = 0;  // events of kinds that are neither spans nor instants of a thread
    bool isComplete = false;
    std::optional<size_t> brokenLine;
};

Record MakeRecord(Trace&& trace);

}  // namespace tool
