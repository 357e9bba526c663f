// Libraries are shared objects under their Windows names ("ny_client.dll"). A module's handle is that of dlopen.
#pragma once

#include "win32/types.h"

using FARPROC = intptr_t (*)();

inline constexpr DWORD DONT_RESOLVE_DLL_REFERENCES = 0x1;
inline constexpr DWORD LOAD_WITH_ALTERED_SEARCH_PATH = 0x8;
inline constexpr DWORD LOAD_LIBRARY_SEARCH_SYSTEM32 = 0x800;

inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_PIN = 0x1;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 0x2;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x4;

extern "C" {

// Folders may be separated by either slash. A name without a folder is the loaded library of that name, or else looked
// for in the program's folder, and nowhere else. Flags other than LOAD_WITH_ALTERED_SEARCH_PATH are refused.
HMODULE LoadLibraryExA(LPCSTR path, HANDLE reserved, DWORD flags);
HMODULE LoadLibraryA(LPCSTR path);
BOOL FreeLibrary(HMODULE library);
// Only for a thread made by CreateThread. Nothing of C++ is unwound, as on Windows.
[[noreturn]] void FreeLibraryAndExitThread(HMODULE library, DWORD exitCode);

// Finds exports of the library itself, not those of libraries that it depends on.
FARPROC GetProcAddress(HMODULE library, LPCSTR name);

HMODULE GetModuleHandleA(LPCSTR name);
HMODULE GetModuleHandleW(LPCWSTR name);
// A pinned library stays until the process ends, and gives no reference.
BOOL GetModuleHandleExA(DWORD flags, LPCSTR nameOrAddress, HMODULE* library);
BOOL GetModuleHandleExW(DWORD flags, LPCWSTR nameOrAddress, HMODULE* library);
DWORD GetModuleFileNameA(HMODULE library, LPSTR path, DWORD size);
DWORD GetModuleFileNameW(HMODULE library, LPWSTR path, DWORD size);

}  // extern "C"
