#pragma once

#include <windows.h>

#include "checking/Registration.h"
#include "checking/Scope.h"
#include "checking/Thrown.h"

namespace checking {

// One run of a callback, from construction to destruction.
class CallbackRun {
public:
    CallbackRun(Registration& ofModule, const char* function);
    ~CallbackRun();
    CallbackRun(const CallbackRun&) = delete;
    CallbackRun& operator=(const CallbackRun&) = delete;

private:
    Registration& registration;
    const Scope scope;
    const ULONGLONG begin = ::GetTickCount64();
};

// Whether that is longer than a call should take: than VSMSGBUS_CHECK_SLOW milliseconds, 5000 when that is not set.
bool IsSlow(ULONGLONG milliseconds) noexcept;

// What `call()` answers, which calls the registered interface. Raises what the module throws, and
// bridge::ForeignException when the interface is gone.
template <class Call>
auto CallRegistered(Registration& registration, const char* function, const Call& call) {
    const CallbackRun run(registration, function);
    registration.ExpectThere();
    return CallTelling(registration.NarrowId(), function, call);
}

}  // namespace checking
