#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

namespace tool::judge {

// The judge's knowledge of the modules, from the first playings.
struct Profile {
    // The products that they register, and for what.
    std::map<std::string, std::set<std::string>> products;
    // The function by which each module leaves; empty for none.
    std::map<std::string, std::string> leaveFunctions;
    // The agent's functions that the bridge calls while they enter, are asked, and leave.
    std::set<std::string> enterCalls;
    std::set<std::string> useCalls;
    std::set<std::string> leaveCalls;
};

// One story that the judge plays.
struct Trial {
    std::string name;     // as in --only
    std::string purpose;  // a sentence
    nlohmann::ordered_json story;
    bool isChecking = true;
    // Rules of the checking bridge that the story itself gives reason for.
    std::set<std::string> expectedRules;
};

// The first story: the modules enter and leave, and it is learnt what they register.
Trial FirstTrial();
// The second: each service is used, and it is learnt what the bridge calls meanwhile.
Trial UseTrial(const Profile& profile);
// The others. `isShort` leaves out those that take long: most failing calls, and most cycles.
std::vector<Trial> MakeTrials(const Profile& profile, uint32_t cycles, bool isShort);

}  // namespace tool::judge
