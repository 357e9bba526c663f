#pragma once

#include <windows.h>

#include "support/LineLog.h"
#include "support/SystemFunction.h"

// Keeps what this program's own code gives to the debugger while it lives. One at a time.
class DebuggerOutput {
public:
    DebuggerOutput() { current = this; }

    LineLog log;

private:
    static void WINAPI Keep(const wchar_t* text) { current->log.Add(Narrow(text)); }

    static inline DebuggerOutput* current = nullptr;
    SystemFunction<decltype(::OutputDebugStringW)> function{&::OutputDebugStringW, &Keep};
};
