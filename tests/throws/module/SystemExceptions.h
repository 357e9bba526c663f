#pragma once

#include "ThrowingModule.h"

// Raises one of those that are no C++ exceptions, on Windows. Returns when a handler has it go on behind that.
void RaiseSystemException(Thrown thrown);

#if defined(_MSC_VER)
// Runs `body(argument)` and tells when it raises that kind, as "caught the <kind>". With the system's own handler,
// which only Microsoft's compiler has a word for. False for what is a C++ exception: nothing was run.
bool CatchSystemException(Thrown thrown, void (*body)(void* argument), void* argument);
#endif
