// A registry in memory, one for the process, empty at its start. Key and value names are compared without their case.
// Texts are kept as UTF-8: what is written through one kind of function is read through the other as text.
#pragma once

#include "win32/types.h"

using HKEY = struct HKEY__*;
using PHKEY = HKEY*;
using REGSAM = DWORD;
using LSTATUS = LONG;

inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(uintptr_t{0x80000001});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(uintptr_t{0x80000002});

inline constexpr REGSAM KEY_QUERY_VALUE = 0x1;
inline constexpr REGSAM KEY_SET_VALUE = 0x2;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x4;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x8;
inline constexpr REGSAM KEY_NOTIFY = 0x10;
inline constexpr REGSAM KEY_WOW64_64KEY = 0x100;
inline constexpr REGSAM KEY_WOW64_32KEY = 0x200;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;
inline constexpr DWORD REG_NOTIFY_CHANGE_NAME = 0x1;
inline constexpr DWORD REG_NOTIFY_CHANGE_LAST_SET = 0x4;

extern "C" {

LSTATUS RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, REGSAM access, PHKEY result);
LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result);
LSTATUS RegCreateKeyExA(HKEY key, LPCSTR subKey, DWORD reserved, LPSTR keyClass, DWORD options, REGSAM access,
                        LPSECURITY_ATTRIBUTES security, PHKEY result, LPDWORD disposition);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegOverridePredefKey(HKEY predefined, HKEY replacement);
LSTATUS RegDeleteTreeA(HKEY key, LPCSTR subKey);
LSTATUS RegDeleteKeyExA(HKEY key, LPCSTR subKey, REGSAM view, DWORD reserved);

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);
LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);
LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
LSTATUS RegDeleteValueA(HKEY key, LPCSTR name);

// Asynchronous only. The event is reset, and then set once: by a change that the filter names, by the key's deletion,
// or by its closing. The subtree and the filter of an open key are those of its first request.
LSTATUS RegNotifyChangeKeyValue(HKEY key, BOOL watchSubtree, DWORD filter, HANDLE event, BOOL asynchronous);

}  // extern "C"
