// The one place where what was thrown becomes an answer: every export and every function that the agent calls runs its
// body through Guarded or GuardedBy.
#pragma once

#include <type_traits>
#include <utility>

// The body's answer, or `whenThrown` when anything escapes it.
template <class Answer, class Body>
Answer Guarded(Answer whenThrown, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return whenThrown;
    }
}

// The same for a body without an answer: what escapes it is dropped.
template <class Body>
requires std::is_void_v<std::invoke_result_t<Body>>
void Guarded(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) {
        return;
    }
}

// The same with a say in it: `onKnown` answers for an exception of type Known, `onOther` for every other one. What
// escapes those two in turn (a text that could not be composed for want of memory) becomes `whenThrown`.
template <class Known, class Answer, class Body, class OnKnown, class OnOther>
Answer GuardedBy(Answer whenThrown, Body&& body, OnKnown&& onKnown, OnOther&& onOther) noexcept {
    return Guarded(whenThrown, [&]() -> Answer {
        try {
            return std::forward<Body>(body)();
        } catch (const Known& known) {
            return std::forward<OnKnown>(onKnown)(known);
        } catch (...) {
            return std::forward<OnOther>(onOther)();
        }
    });
}
