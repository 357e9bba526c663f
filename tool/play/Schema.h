#pragma once

#include <nlohmann/json.hpp>

namespace tool::play {

// The JSON schema of stories, made of the table of verbs: what editors complete and check stories with.
nlohmann::ordered_json MakeSchema();

}  // namespace tool::play
