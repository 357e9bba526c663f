#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tool/doctor/Problems.h"

namespace tool::doctor {

enum class State {
    Good,
    Note,        // worth knowing, and nothing that keeps a module from being asked
    Bad,         // a finding
    NotReached,  // something else has to be right before it can be looked at
};

// One check, as it came out.
struct Check {
    std::string group;
    std::string name;
    State state = State::NotReached;
    std::vector<std::string> details{};
    // Of a bad check: its problem, and the texts for the places in the problem's texts.
    std::optional<Problem> problem{};
    std::vector<std::string> places{};
};

// Checks in the order in which one depends on those before: the first bad one is the first cause.
using Checks = std::vector<Check>;

inline Check Good(std::string group, std::string name, std::vector<std::string> details = {}) {
    return {std::move(group), std::move(name), State::Good, std::move(details)};
}
inline Check Note(std::string group, std::string name, std::vector<std::string> details) {
    return {std::move(group), std::move(name), State::Note, std::move(details)};
}
inline Check NotReached(std::string group, std::string name) {
    return {std::move(group), std::move(name)};
}
inline Check Bad(std::string group, std::string name, Problem problem, std::vector<std::string> places,
                 std::vector<std::string> details = {}) {
    return {std::move(group), std::move(name), State::Bad, std::move(details), problem, std::move(places)};
}

inline void Append(Checks& checks, Checks more) {
    for (Check& check : more) {
        checks.push_back(std::move(check));
    }
}

}  // namespace tool::doctor
