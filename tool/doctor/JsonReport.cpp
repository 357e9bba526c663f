#include "tool/doctor/JsonReport.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "tool/doctor/Diagnosis.h"

namespace tool::doctor {

namespace {

using nlohmann::ordered_json;

const char* NameOf(State state) {
    switch (state) {
        case State::Good: return "good";
        case State::Note: return "note";
        case State::Bad: return "bad";
        default: return "not reached";
    }
}

ordered_json ObjectOf(const Cause& cause) {
    return {{"problem", cause.name}, {"text", cause.text}, {"remedy", cause.remedy}};
}

ordered_json ObjectOf(const Check& check) {
    ordered_json object = {
        {"group", check.group}, {"name", check.name}, {"state", NameOf(check.state)}, {"details", check.details}};
    if (check.state == State::Bad) {
        object["cause"] = ObjectOf(CauseOf(check));
    }
    return object;
}

}  // namespace

void PrintJson(const Checks& checks) {
    const Check* const first = FirstCause(checks);
    ordered_json report = {{"cause", nullptr}, {"checks", ordered_json::array()}};
    if (first != nullptr) {
        report["cause"] = ObjectOf(CauseOf(*first));
    }
    for (const Check& check : checks) {
        report["checks"].push_back(ObjectOf(check));
    }
    fmt::print("{}\n", report.dump(2, ' ', false, ordered_json::error_handler_t::replace));
}

}  // namespace tool::doctor
