#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace tool::judge {

struct Profile;

// The steps of a story, one after the other.
class Steps {
public:
    // Adds a step with that verb. With gives the last step added another member.
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

// The content of a story's file.
nlohmann::ordered_json MakeStory(const std::string& name, Steps steps);

// Gives the agent what the requests need: a policy and some tasks for each product that takes them.
Steps Prepare(const Profile& profile);
enum class Answers { Successes, Any };
// One step: a request of the service to the product, which stays under way under that name until a step "await".
Steps Request(const std::string& service, const std::string& product, const std::string& name, Answers answers,
              int task = 0);
// A request for each service of each product, one after the other, whatever the answers are.
Steps RequestAll(const Profile& profile);
// Prepare, then the requests of every service; each must be answered by a success, and a task must come to its end.
Steps UseAll(const Profile& profile);

}  // namespace tool::judge
