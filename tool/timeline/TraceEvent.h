#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace tool {

// One event of a trace, as it stands in the file. Texts are UTF-8.
struct TraceEvent {
    char phase = 0;  // of the Trace Event format: B and E, X, i and I, M, and others
    std::string name;
    double time = 0;      // microseconds, from wherever the trace counts
    double duration = 0;  // of an X
    std::string process;
    std::string thread;
    nlohmann::ordered_json arguments;  // an object, or null
};

// Throws std::runtime_error with what is wrong when the value is no event.
TraceEvent EventFromJson(nlohmann::ordered_json&& value);

}  // namespace tool
