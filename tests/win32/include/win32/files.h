#pragma once

#include "win32/types.h"

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(intptr_t{-1});

inline constexpr DWORD FILE_APPEND_DATA = 0x4;
inline constexpr DWORD FILE_SHARE_READ = 0x1;
inline constexpr DWORD FILE_SHARE_WRITE = 0x2;
inline constexpr DWORD FILE_SHARE_DELETE = 0x4;
inline constexpr DWORD OPEN_ALWAYS = 4;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;

struct OVERLAPPED;
using LPOVERLAPPED = OVERLAPPED*;

extern "C" {

// Only files that are written at their end, shared with everybody, and made when they are not there. Folders may be
// separated by either slash.
HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES security, DWORD disposition,
                   DWORD attributes, HANDLE templateFile);
// Not overlapped. What the file system does not take counts as a full disk.
BOOL WriteFile(HANDLE file, const void* data, DWORD size, LPDWORD written, LPOVERLAPPED overlapped);

}  // extern "C"
