// For the sources that read JSON themselves.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "simulator/core/frame/Failure.h"
#include "simulator/core/values/Values.h"

namespace simulator {

// Keeps the keys of an object in the order of the text.
using Json = nlohmann::ordered_json;

// What ValueFromJson makes of the text of such a value.
ValuePointer ValueFrom(const Json& json);

// Refuses what is not a text.
inline std::string TextFrom(const Json& json) {
    Require(json.is_string());
    return json.get<std::string>();
}

}  // namespace simulator
