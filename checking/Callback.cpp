#include "checking/Callback.h"

#include <string>

#include "checking/Environment.h"
#include "checking/Findings.h"

namespace checking {

bool IsSlow(ULONGLONG milliseconds) noexcept {
    constexpr unsigned long usual = 5000;
    return milliseconds > NumberFromEnvironment("VSMSGBUS_CHECK_SLOW", usual);
}

CallbackRun::~CallbackRun() {
    registration.Leave();
    const ULONGLONG taken = ::GetTickCount64() - begin;
    if (taken == 0 || !IsSlow(taken)) {
        return;
    }
    const bool isSink = registration.Service().bit == 0;
    const std::string function = isSink ? "" : scope.Function();
    Report(isSink ? Rule::SinkSlow : Rule::CallbackSlow, registration.NarrowId(), {std::to_string(taken), function});
}

}  // namespace checking
