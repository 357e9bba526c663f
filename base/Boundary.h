// Every export, and every function that the agent calls, turns what its body throws into an answer here.
#pragma once

#include <type_traits>
#include <utility>

namespace bridge {

// The body's answer, or `whenThrown` when anything escapes it.
template <class Answer, class Body>
Answer Guarded(Answer whenThrown, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return whenThrown;
    }
}

// For a body that returns nothing: false when an exception escaped it. The exception is dropped.
template <class Body>
requires std::is_void_v<std::invoke_result_t<Body>>
bool Guarded(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace bridge
