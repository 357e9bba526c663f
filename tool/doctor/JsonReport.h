#pragma once

#include "tool/doctor/Check.h"

namespace tool::doctor {

// Prints everything as one JSON object: "cause" (null when there is none) with "problem", "text" and "remedy", and
// "checks" with "group", "name", "state" ("good", "note", "bad" or "not reached"), "details" and, of a bad one,
// "cause".
void PrintJson(const Checks& checks);

}  // namespace tool::doctor
