#pragma once

#include "tool/doctor/Check.h"

namespace tool::doctor {

// Prints the first cause and its remedy, then all checks, for people.
void PrintText(const Checks& checks);

}  // namespace tool::doctor
