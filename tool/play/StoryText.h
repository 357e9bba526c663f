#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tool::play {

// A story that is refused: "FILE:LINE: reason".
class WrongStory : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The text of a story as JSON, and where its values stand.
class StoryText {
public:
    // Throws WrongStory for what is no JSON, and for an object with a member that comes twice. `file` is how messages
    // name it.
    StoryText(std::string file, std::string_view text);

    const nlohmann::json& Root() const noexcept { return root; }
    // The line of the value, or of its nearest parent that has one; `pointer` is a JSON pointer, as in "/steps/2/do".
    int LineOf(std::string pointer) const;
    [[noreturn]] void Refuse(const std::string& pointer, const std::string& reason) const;

private:
    [[noreturn]] void RefuseLine(int line, const std::string& reason) const;

    std::string name;
    nlohmann::json root;
    std::map<std::string, int> lines;
};

}  // namespace tool::play
