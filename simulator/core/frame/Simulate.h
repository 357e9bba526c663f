// What every agent function goes through.
#pragma once

#include <cstdint>

#include "simulator/core/frame/Frame.h"
#include "simulator/core/frame/FunctionName.h"
#include "simulator/core/frame/Guarded.h"

namespace simulator {

// Records the call of the function, asks for locks of the caller's, runs the function's hook, and answers an injected
// fault in the place of the body, which says by Failure or HandleMisuse that it does not end well. The record comes
// before the hook, so that a call held up by its hook is seen as begun.
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
