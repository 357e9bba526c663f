// Finds the library that calls the layer.
#pragma once

#include "win32/types.h"

namespace win32 {

// Whether the function of the layer that runs was called by a watched library.
bool IsCallerWatched() noexcept;

// The time that the calling function may wait: what it was asked for, or less for a watched library.
DWORD LimitedWait(DWORD milliseconds) noexcept;

}  // namespace win32
