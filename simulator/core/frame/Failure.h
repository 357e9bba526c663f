// The exceptions by which the body of an agent function or of a control function ends with a code.
#pragma once

#include <cstdint>
#include <string>

#include "ny_agent.h"

namespace simulator {

// The function answers this code.
struct Failure {
    int32_t code;
};

// The caller named a handle that is dead or of another kind: the function answers NY_INVALID_ARGUMENT, and the misuse
// is counted.
struct HandleMisuse {
    std::string description;
};

// Ends the function with NY_INVALID_ARGUMENT unless the condition holds.
inline void Require(bool condition) {
    if (!condition) {
        throw Failure{NY_INVALID_ARGUMENT};
    }
}

}  // namespace simulator
