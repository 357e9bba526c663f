#pragma once

#include "simulator/core/values/Values.h"

namespace simulator {

// A string gives a text, an object a table, an array an array, anything else a text with its JSON form. Throws Failure
// when the text is not JSON.
ValuePointer ValueFromJson(const char* json);

}  // namespace simulator
