#pragma once

#include "win32/types.h"

inline constexpr UINT CP_UTF8 = 65001;

extern "C" {

// Between UTF-8, the only code page, and UTF-32. What is malformed becomes U+FFFD, byte by byte but
// for a character that is cut off, which becomes one.
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int size, LPWSTR wide, int wideSize);
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wide, int size, LPSTR text, int textSize,
                        LPCSTR defaultText, BOOL* usedDefault);

}  // extern "C"
