#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace tool::judge {

struct Profile;

// The steps of a story, one after the other.
class Steps {
public:
    // Adds a step, for more members by With.
    Steps& Do(const char* verb);
    template <class Value>
    Steps& With(const char* member, Value value) {
        all.back()[member] = std::move(value);
        return *this;
    }
    Steps& operator+=(const Steps& others);
    friend Steps operator+(Steps first, const Steps& second) { return std::move(first += second); }

    nlohmann::ordered_json all = nlohmann::ordered_json::array();
};

// A story file's content.
nlohmann::ordered_json MakeStory(const std::string& name, Steps steps);

// Gives the agent what the requests need: a policy and some tasks for each product that takes them.
Steps Prepare(const Profile& profile);
enum class Answers { Successes, Any };
// A request of the service, which goes on beside the story under that name.
Steps Request(const std::string& service, const std::string& product, const std::string& name, Answers answers,
              int task = 0);
// One for each service of each product, one after the other; nothing is expected of the answers.
Steps RequestAll(const Profile& profile);
// The same, with Prepare, where the answers are to be successes and tasks are to end.
Steps UseAll(const Profile& profile);

}  // namespace tool::judge
