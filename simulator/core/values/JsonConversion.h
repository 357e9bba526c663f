// For the sources that read JSON themselves.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "simulator/core/frame/Failure.h"
#include "simulator/core/values/Values.h"

namespace simulator {

// Keeps the keys of an object in the order of the text.
using Json = nlohmann::ordered_json;

// The value that ValueFromJson makes of such a text.
ValuePointer ValueFrom(const Json& json);

// Throws Failure for what is not a text.
inline std::string TextFrom(const Json& json) {
    Require(json.is_string());
    return json.get<std::string>();
}

}  // namespace simulator
