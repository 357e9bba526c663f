// The agent's functions by library, from the bridge's own tables, and what cannot work without them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tool::doctor {

// The agent's libraries, in the order in which the bridge comes to need them.
struct AgentLibrary {
    const char* file;
    const char* use;  // what there is not without it
};
std::span<const AgentLibrary> AgentLibraries();

// The names that the bridge looks for in the library of that file name.
std::vector<std::string_view> FunctionsOf(std::string_view library);

// The part of the bridge that does not work without the function. Empty for a function that the bridge looks for and
// never calls, or does without.
std::string_view UseOf(std::string_view function);

}  // namespace tool::doctor
