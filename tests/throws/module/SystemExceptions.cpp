#include "SystemExceptions.h"

#if defined(_WIN32)
#include <windows.h>
#endif

#include "Throwing.h"

void RaiseSystemException(Thrown thrown) {
#if defined(_WIN32)
    switch (thrown) {
        case Thrown::AccessViolation: *const_cast<volatile int*>(static_cast<int*>(nullptr)) = 0; break;
        case Thrown::Breakpoint: ::DebugBreak(); break;
        // A stack that is really used up ends the thread under Wine, before any frame is asked.
        case Thrown::StackOverflow: ::RaiseException(EXCEPTION_STACK_OVERFLOW, 0, 0, nullptr); break;
        default: break;
    }
#else
    static_cast<void>(thrown);
#endif
}

#if defined(_MSC_VER)

namespace {

struct CaughtKind {
    Thrown thrown;
    DWORD code;
    const char* caught;
};

constexpr CaughtKind allKinds[] = {
    {Thrown::AccessViolation, EXCEPTION_ACCESS_VIOLATION, "caught the access violation"},
    {Thrown::Breakpoint, EXCEPTION_BREAKPOINT, "caught the breakpoint"},
    {Thrown::StackOverflow, EXCEPTION_STACK_OVERFLOW, "caught the stack overflow"},
};

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wlanguage-extension-token"
void CatchKind(const CaughtKind& kind, void (*body)(void* argument), void* argument) {
    __try {
        body(argument);
    } __except (_exception_code() == kind.code ? EXCEPTION_EXECUTE_HANDLER : EXCEPTION_CONTINUE_SEARCH) {
        Tell(kind.caught);
    }
}
#pragma clang diagnostic pop

}  // namespace

bool CatchSystemException(Thrown thrown, void (*body)(void* argument), void* argument) {
    for (const CaughtKind& kind : allKinds) {
        if (kind.thrown == thrown) {
            CatchKind(kind, body, argument);
            return true;
        }
    }
    return false;
}

#endif
