// A test's control of the Win32 layer: has functions fail, and counts what is left open. Any thread.
#pragma once

#include <cstddef>

#include "win32/types.h"

namespace win32 {

enum class FaultMode { Once, FromThenOn };

// The calls that count: all, or those of the watched libraries alone.
enum class Callers { All, Watched };

// Has the function of the layer fail with `error` at its nth use counted from now (1 is the next one). It then does
// nothing else and answers as Windows does: a registry function the error itself, the others 0, null,
// INVALID_HANDLE_VALUE or WAIT_FAILED with the error as the last error. A second fault of the same function and the
// same callers replaces the first. False, and nothing happens, for a name that the layer does not have, for a function
// that cannot fail, and when nth is 0.
bool FailCall(const char* function, size_t nth, DWORD error, FaultMode mode = FaultMode::Once,
              Callers callers = Callers::All);
void ClearFaults();

// Uses of the function since the process began, the failed ones included. 0 for a name that FailCall refuses.
size_t Uses(const char* function, Callers callers = Callers::All);
// Uses of all functions that a fault met since the process began.
size_t FailedUses();

// The functions that can fail, by index; null behind the last one.
const char* FunctionAt(size_t index);

// Watches the calls that the code of a loaded library makes itself; beside those watched already. To be called while no
// other thread calls the layer. False when there is no such library, or no room for it.
bool WatchLibrary(const char* fileName);
void UnwatchLibraries();
// Has no wait or pause of a watched library be longer than that; INFINITE, as at first, takes the limit away. A wait
// without end stays one.
void LimitWatchedWaits(DWORD milliseconds);

// Handles that are open: events, threads, files and registry keys; and the registry keys among them.
size_t OpenHandles();
size_t OpenRegistryKeys();
// A number that grows with every handle that is opened. Closes all that were opened since it was `mark`.
size_t HandleMark();
void CloseHandlesSince(size_t mark);

// References to libraries that LoadLibraryA and its siblings gave and that were not given back.
size_t LibraryReferences();

}  // namespace win32
