#pragma once

#include <windows.h>

#include <string>

namespace tool::doctor {

// A value of HKEY_LOCAL_MACHINE as it stands there, before the bridge's reading of it.
struct RawValue {
    LSTATUS keyError = ERROR_SUCCESS;
    LSTATUS error = ERROR_SUCCESS;  // of the value, or of the key when that could not be opened
    DWORD type = 0;
    DWORD size = 0;    // in bytes, as narrow text
    std::string text;  // UTF-8, up to its first zero; empty when it is no text

    bool IsThere() const { return error == ERROR_SUCCESS; }
    // "REG_SZ", ...
    std::string TypeName() const;
};

// `view` is KEY_WOW64_64KEY or KEY_WOW64_32KEY.
RawValue ReadRawValue(const char* key, const char* value, REGSAM view);

}  // namespace tool::doctor
