// The frame of every agent function.
#pragma once

#include <cstdint>

#include "simulator/core/frame/Frame.h"
#include "simulator/core/frame/FunctionName.h"
#include "simulator/core/frame/Guarded.h"

namespace simulator {

// Records the call of the function, counts a misuse when the caller holds locks, and runs the function's hook. Then it
// answers an injected fault or runs the body, which fails by throwing Failure or HandleMisuse. The record comes before
// the hook, so that tests see a call that its hook holds up.
template <class Body>
int32_t Simulate(FunctionName name, const Body& body) noexcept {
    const char* const function = name.text;
    Frame& frame = TheFrame();
    uint64_t call = CallRecord::noCall;
    const int32_t result = Guarded(function, [&] {
        call = frame.calls.Begin(function);
        frame.lockCheck.Run(function, frame.misuse);
        frame.hooks.Run(function);
        if (const auto injected = frame.faults.Take(function)) {
            throw Failure{*injected};
        }
        body();
    });
    frame.calls.End(call, result);
    return result;
}

}  // namespace simulator
