#include "tool/doctor/Diagnosis.h"

#include <algorithm>

namespace tool::doctor {

Cause CauseOf(const Check& check) {
    const ProblemText& text = TextOf(check.problem.value());
    return {Filled(text.name, check.places), Filled(text.cause, check.places), Filled(text.remedy, check.places)};
}

const Check* FirstCause(const Checks& checks) {
    const auto found =
        std::find_if(checks.begin(), checks.end(), [](const Check& check) { return check.state == State::Bad; });
    return found != checks.end() ? &*found : nullptr;
}

ExitStatus StatusOf(const Checks& checks) {
    return FirstCause(checks) == nullptr ? ExitStatus::Right : ExitStatus::Finding;
}

}  // namespace tool::doctor
