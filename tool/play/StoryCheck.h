#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tool/play/StoryText.h"

namespace tool::play {

// The story with the member "line" in every step, and lists in the place of the names of files in `folder`. Throws
// WrongStory when it is not of the form that the table of verbs gives.
nlohmann::json CheckStory(const StoryText& source, const std::filesystem::path& folder);

}  // namespace tool::play
