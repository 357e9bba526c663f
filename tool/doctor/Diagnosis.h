#pragma once

#include <string>

#include "tool/ExitStatus.h"
#include "tool/doctor/Check.h"

namespace tool::doctor {

// What is wrong, in words.
struct Cause {
    std::string name;  // for machines
    std::string text;
    std::string remedy;
};

// What a bad check says.
Cause CauseOf(const Check& check);

// The first bad check, on which those after it may depend; null when there is none.
const Check* FirstCause(const Checks& checks);

ExitStatus StatusOf(const Checks& checks);

}  // namespace tool::doctor
