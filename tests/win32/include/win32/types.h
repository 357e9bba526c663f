#pragma once

#include <cstddef>
#include <cstdint>

// There is one calling convention.
#define WINAPI

using BOOL = int;
using WINBOOL = BOOL;
using BYTE = unsigned char;
using WORD = uint16_t;
using DWORD = uint32_t;
using LONG = int32_t;
using UINT = uint32_t;
using ULONG = uint32_t;
using SIZE_T = size_t;
using ULONGLONG = uint64_t;
using LPCSTR = const char*;
using LPSTR = char*;
using LPCWSTR = const wchar_t*;
using LPWSTR = wchar_t*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using LPVOID = void*;

using HANDLE = void*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;

struct SECURITY_ATTRIBUTES;
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;
inline constexpr int MAX_PATH = 260;
