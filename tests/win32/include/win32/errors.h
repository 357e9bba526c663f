#pragma once

#include <cstdarg>

#include "win32/types.h"

inline constexpr LONG ERROR_SUCCESS = 0;
inline constexpr LONG NO_ERROR = 0;
inline constexpr LONG ERROR_INVALID_FUNCTION = 1;
inline constexpr LONG ERROR_FILE_NOT_FOUND = 2;
inline constexpr LONG ERROR_PATH_NOT_FOUND = 3;
inline constexpr LONG ERROR_ACCESS_DENIED = 5;
inline constexpr LONG ERROR_INVALID_HANDLE = 6;
inline constexpr LONG ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr LONG ERROR_INVALID_DATA = 13;
inline constexpr LONG ERROR_INVALID_PARAMETER = 87;
inline constexpr LONG ERROR_DISK_FULL = 112;
inline constexpr LONG ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr LONG ERROR_MOD_NOT_FOUND = 126;
inline constexpr LONG ERROR_PROC_NOT_FOUND = 127;
inline constexpr LONG ERROR_BAD_PATHNAME = 161;
inline constexpr LONG ERROR_ALREADY_EXISTS = 183;
inline constexpr LONG ERROR_BAD_EXE_FORMAT = 193;
inline constexpr LONG ERROR_ENVVAR_NOT_FOUND = 203;
inline constexpr LONG ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr LONG ERROR_MORE_DATA = 234;
inline constexpr LONG ERROR_NOT_OWNER = 288;
inline constexpr LONG ERROR_MR_MID_NOT_FOUND = 317;
inline constexpr LONG ERROR_KEY_DELETED = 1018;
inline constexpr LONG ERROR_TIMEOUT = 1460;

inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

extern "C" {

DWORD GetLastError();
void SetLastError(DWORD error);

// The text is "Error <code>." and a line end for every code that Windows could have one for, those below 16000.
DWORD FormatMessageA(DWORD flags, const void* source, DWORD message, DWORD language, LPSTR buffer, DWORD size,
                     va_list* arguments);

}  // extern "C"
