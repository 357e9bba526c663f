#include "tool/timeline/TraceEvent.h"

#include <cmath>
#include <stdexcept>

namespace tool {

namespace {

using nlohmann::ordered_json;

[[noreturn]] void Refuse(const std::string& reason) {
    throw std::runtime_error(reason);
}

std::string TextOfMember(const ordered_json& event, const char* member) {
    const auto found = event.find(member);
    if (found == event.end()) {
        return {};
    }
    if (!found->is_string()) {
        Refuse(std::string("the event's \"") + member + "\" is no text");
    }
    return found->get<std::string>();
}

// A process or a thread: a number as the bridge writes it, or a text.
std::string IdOfMember(const ordered_json& event, const char* member) {
    const auto found = event.find(member);
    if (found == event.end()) {
        return "0";
    }
    if (!found->is_string() && !found->is_number_integer()) {
        Refuse(std::string("the event's \"") + member + "\" is neither a whole number nor a text");
    }
    return found->is_string() ? found->get<std::string>() : found->dump();
}

// Microseconds that a double tells apart: some 285 years.
double TimeOfMember(const ordered_json& event, const char* member) {
    constexpr double most = 9007199254740992.0;
    const auto found = event.find(member);
    if (found == event.end()) {
        Refuse(std::string("the event has no \"") + member + "\"");
    }
    if (!found->is_number()) {
        Refuse(std::string("the event's \"") + member + "\" is no number");
    }
    const auto time = found->get<double>();
    if (!(std::abs(time) <= most)) {
        Refuse(std::string("the event's \"") + member + "\" is too large for a time in microseconds");
    }
    return time;
}

}  // namespace

TraceEvent EventFromJson(ordered_json&& value) {
    TraceEvent event;
    const std::string phase = TextOfMember(value, "ph");
    if (phase.size() != 1) {
        Refuse("the event has no \"ph\" of one letter");
    }
    event.phase = phase[0];
    event.name = TextOfMember(value, "name");
    event.process = IdOfMember(value, "pid");
    event.thread = IdOfMember(value, "tid");
    if (event.phase != 'M') {
        event.time = TimeOfMember(value, "ts");
    }
    if (event.phase == 'X') {
        event.duration = TimeOfMember(value, "dur");
        if (event.duration < 0) {
            Refuse("the event's \"dur\" is less than nothing");
        }
    }
    if (const auto arguments = value.find("args"); arguments != value.end() && arguments->is_object()) {
        event.arguments = std::move(*arguments);
    }
    return event;
}

}  // namespace tool
