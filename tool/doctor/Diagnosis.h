#pragma once

#include <string>

#include "tool/ExitStatus.h"
#include "tool/doctor/Check.h"

namespace tool::doctor {

// A cause of trouble, and its remedy.
struct Cause {
    std::string name;  // for machines
    std::string text;
    std::string remedy;
};

// The cause that a bad check has found.
Cause CauseOf(const Check& check);

// The first bad check, on which those after it may depend; null when there is none.
const Check* FirstCause(const Checks& checks);

ExitStatus StatusOf(const Checks& checks);

}  // namespace tool::doctor
