#pragma once

#include <windows.h>

namespace checking {

// Sees the exceptions of every thread before others do, from construction to destruction. As a static object it ends
// with this library, also where that is unloaded before any product has entered.
class VectoredHandler {
public:
    explicit VectoredHandler(PVECTORED_EXCEPTION_HANDLER function) noexcept
        : handler(::AddVectoredExceptionHandler(TRUE, function)) {}
    ~VectoredHandler() { ::RemoveVectoredExceptionHandler(handler); }
    VectoredHandler(const VectoredHandler&) = delete;
    VectoredHandler& operator=(const VectoredHandler&) = delete;

    bool IsThere() const noexcept { return handler != nullptr; }

private:
    void* const handler;
};

}  // namespace checking
