// The findings. Each rule is told once for a product and a place, and counted each time.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "base/Boundary.h"
#include "checking/Rules.h"

namespace checking {

// Tells of a finding that was not told before. `details` take the places of "{1}" to "{3}" in the rule's texts. What
// memory is too short for is not told.
void Report(Rule rule, std::string_view productId, std::initializer_list<std::string_view> details = {}) noexcept;

// Remembers that a note is missing, see HasForgotten. Answers false.
bool ForgetSome() noexcept;
// Runs `body()`, which notes what a module does. Where that fails, for want of memory, findings that rest on such notes
// are not reported from now on.
template <class Body>
bool Noted(Body&& body) noexcept {
    return bridge::Guarded(std::forward<Body>(body)) || ForgetSome();
}
// Whether Noted has failed before, so that some notes are missing.
bool HasForgotten() noexcept;

// How many findings of that rule there were, those not told again included; of all rules but notes for null. One counts
// once its line is written.
unsigned CountFindings(const char* ruleName) noexcept;

// The line that tells a finding; `place` says where it was made.
std::string Message(const RuleText& rule, std::string_view productId, std::initializer_list<std::string_view> details,
                    std::string_view place);

}  // namespace checking
