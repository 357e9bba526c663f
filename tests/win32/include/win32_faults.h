// What a test asks of the Win32 layer itself: to fail, and what is left open. Any thread.
#pragma once

#include <cstddef>

#include "win32/types.h"

namespace win32 {

enum class FaultMode { Once, FromThenOn };

// Has the function of the layer fail with `error` at its nth use counted from now (1 is the next one). It then does
// nothing else and answers as Windows does: a registry function the error itself, the others 0, null,
// INVALID_HANDLE_VALUE or WAIT_FAILED with the error as the last error. A second fault of the same function replaces
// the first. False, and nothing happens, for a name that the layer does not have, for a function that cannot fail, and
// when nth is 0.
bool FailCall(const char* function, size_t nth, DWORD error, FaultMode mode = FaultMode::Once);
void ClearFaults();

// Uses of the function since the process began, the failed ones included. 0 for a name that FailCall refuses.
size_t Uses(const char* function);

// Handles that are open: events, threads, files and registry keys; and the registry keys among them.
size_t OpenHandles();
size_t OpenRegistryKeys();

// References to libraries that LoadLibraryA and its siblings gave and that were not given back.
size_t LibraryReferences();

}  // namespace win32
