#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "tool/play/StoryText.h"

namespace tool::play {

// A story that is right: every step has what its verb needs, and nothing else. Steps are objects as in the file, with
// the member "line" added; the files that they name are read, and their lists stand in the names' places.
class Story {
public:
    // Throws WrongStory; `file` is how messages name it, `folder` where the files are that it names.
    Story(const std::string& file, std::string_view text, const std::filesystem::path& folder);
    // Reads the file as well.
    static Story Read(const std::filesystem::path& file);

    const std::string& Name() const noexcept { return name; }
    // Empty when it says none.
    const std::string& Product() const noexcept { return product; }
    const std::string& LoadFunction() const noexcept { return load; }
    const std::string& UnloadFunction() const noexcept { return unload; }
    // Whether a step looks at the findings of the checking bridge.
    bool NeedsCheckingBridge() const noexcept { return needsCheckingBridge; }

    // The steps one after the other, without those that hold others. A seed decides the order where the story leaves
    // it open. Every step has the member "within".
    nlohmann::json InOrder(std::optional<uint32_t> seed) const;

private:
    std::string name;
    std::string product;
    std::string load;
    std::string unload;
    uint32_t within = 20000;
    bool needsCheckingBridge = false;
    nlohmann::json steps;
};

}  // namespace tool::play
