#pragma once

#include <windows.h>

#include <type_traits>

#include "checking/Registration.h"
#include "checking/Scope.h"
#include "checking/Thrown.h"

namespace checking {

// One run of a callback, from construction to destruction.
class CallbackRun {
public:
    template <class Describe>
    CallbackRun(Registration& ofModule, const char* function, const Describe& describe)
        : registration(ofModule), scope(function, ofModule.NarrowId(), describe) {
        registration.Enter(function);
    }
    ~CallbackRun();
    CallbackRun(const CallbackRun&) = delete;
    CallbackRun& operator=(const CallbackRun&) = delete;

    template <class Answer>
    Answer Answered(Answer value) noexcept {
        return scope.Answered(value);
    }

private:
    Registration& registration;
    Scope scope;
    const ULONGLONG begin = ::GetTickCount64();
};

// Whether that is longer than a call should take: than VSMSGBUS_CHECK_SLOW milliseconds, 5000 when that is not set.
bool IsSlow(ULONGLONG milliseconds) noexcept;

// Runs `call()`, which calls the registered interface, and returns its answer; `describe(arguments)` adds the call's
// arguments for the record. Raises what the module throws, and bridge::ForeignException when the interface is gone.
template <class Call, class Describe>
auto CallRegistered(Registration& registration, const char* function, const Call& call, const Describe& describe) {
    CallbackRun run(registration, function, describe);
    registration.ExpectThere();
    if constexpr (std::is_void_v<std::invoke_result_t<const Call&>>) {
        CallTelling(registration.NarrowId(), function, call);
    } else {
        return run.Answered(CallTelling(registration.NarrowId(), function, call));
    }
}

template <class Call>
auto CallRegistered(Registration& registration, const char* function, const Call& call) {
    return CallRegistered(registration, function, call, [](TraceArguments&) {});
}

}  // namespace checking
