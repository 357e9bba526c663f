#pragma once

#include "win32/types.h"

extern "C" {

// Only how many modules there are: `modules` is left as it is.
BOOL EnumProcessModules(HANDLE process, HMODULE* modules, DWORD size, LPDWORD needed);

}  // extern "C"
