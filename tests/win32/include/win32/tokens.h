// The token of the process: an ordinary program's, of a user who is logged on.
#pragma once

#include "win32/types.h"

enum TOKEN_INFORMATION_CLASS { TokenSessionId = 12, TokenElevation = 20, TokenIntegrityLevel = 25 };

inline constexpr DWORD TOKEN_QUERY = 0x8;
inline constexpr DWORD SECURITY_MAX_SID_SIZE = 68;
inline constexpr DWORD SECURITY_MANDATORY_LOW_RID = 0x1000;
inline constexpr DWORD SECURITY_MANDATORY_MEDIUM_RID = 0x2000;
inline constexpr DWORD SECURITY_MANDATORY_HIGH_RID = 0x3000;
inline constexpr DWORD SECURITY_MANDATORY_SYSTEM_RID = 0x4000;

struct SID_IDENTIFIER_AUTHORITY {
    BYTE Value[6];
};
struct SID {
    BYTE Revision;
    BYTE SubAuthorityCount;
    SID_IDENTIFIER_AUTHORITY IdentifierAuthority;
    DWORD SubAuthority[1];
};
using PSID = void*;

struct SID_AND_ATTRIBUTES {
    PSID Sid;
    DWORD Attributes;
};
struct TOKEN_MANDATORY_LABEL {
    SID_AND_ATTRIBUTES Label;
};
struct TOKEN_ELEVATION {
    DWORD TokenIsElevated;
};

extern "C" {

// Only of the current process, and to be queried alone.
BOOL OpenProcessToken(HANDLE process, DWORD access, HANDLE* token);
BOOL GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID information, DWORD size, LPDWORD needed);

}  // extern "C"
