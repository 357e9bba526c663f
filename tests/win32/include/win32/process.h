// The process, its handles and its heap.
#pragma once

#include "win32/types.h"

inline constexpr DWORD SYNCHRONIZE = 0x100000;
inline constexpr DWORD DUPLICATE_SAME_ACCESS = 0x2;

extern "C" {

DWORD GetCurrentProcessId();
HANDLE GetCurrentProcess();

// A handle is good until it is closed and never given again: a closed one is answered with ERROR_INVALID_HANDLE.
BOOL CloseHandle(HANDLE handle);
// Only in the current process, and always with the same access.
BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE handle, HANDLE targetProcess, HANDLE* copy, DWORD access,
                     BOOL inherit, DWORD options);
BOOL GetHandleInformation(HANDLE handle, LPDWORD flags);
// Handles of the current process: events, threads, files and registry keys.
BOOL GetProcessHandleCount(HANDLE process, LPDWORD count);

// Of the one heap that malloc takes from. A null block is not supported.
intptr_t _get_heap_handle();
BOOL HeapValidate(HANDLE heap, DWORD flags, const void* block);

// The process's own, in UTF-8, as its C library has it. The case of a name does not count. A null value takes the
// variable away.
DWORD GetEnvironmentVariableW(LPCWSTR name, LPWSTR value, DWORD size);
BOOL SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value);

// There is no debugger: the text is dropped.
void OutputDebugStringW(LPCWSTR text);

}  // extern "C"
