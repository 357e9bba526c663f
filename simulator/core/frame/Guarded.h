// Turns what a function's body throws into the function's answer.
#pragma once

#include <cstdint>

#include "simulator/core/frame/Failure.h"

namespace simulator {

// The answer of `function` for the exception that is being handled; counts a misuse.
int32_t AnswerOfCurrentException(const char* function) noexcept;

// Runs the body of `function`: NY_OK when it returns, else the code of what it throws.
template <class Body>
int32_t Guarded(const char* function, const Body& body) noexcept {
    try {
        body();
        return NY_OK;
    } catch (...) {
        return AnswerOfCurrentException(function);
    }
}

}  // namespace simulator
