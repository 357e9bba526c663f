#include "tool/doctor/checks/RawValue.h"

#include <fmt/format.h>

#include <vector>

#include "base/UniqueHandle.h"
#include "tool/doctor/SystemTexts.h"

namespace tool::doctor {

std::string RawValue::TypeName() const {
    switch (type) {
        case REG_SZ: return "REG_SZ";
        case REG_EXPAND_SZ: return "REG_EXPAND_SZ";
        case REG_MULTI_SZ: return "REG_MULTI_SZ";
        case REG_BINARY: return "REG_BINARY";
        case REG_DWORD: return "REG_DWORD";
        default: return fmt::format("type {}", type);
    }
}

RawValue ReadRawValue(const char* keyName, const char* value, REGSAM view) {
    RawValue raw;
    HKEY opened = nullptr;
    raw.keyError = ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, keyName, 0, KEY_QUERY_VALUE | view, &opened);
    const bridge::UniqueKey key(raw.keyError == ERROR_SUCCESS ? opened : nullptr);
    raw.error = raw.keyError;
    if (raw.error != ERROR_SUCCESS) {
        return raw;
    }
    raw.error = ::RegQueryValueExA(key.get(), value, nullptr, &raw.type, nullptr, &raw.size);
    if (raw.error != ERROR_SUCCESS) {
        return raw;
    }
    std::vector<char> bytes(raw.size + size_t{1});
    raw.error =
        ::RegQueryValueExA(key.get(), value, nullptr, &raw.type, reinterpret_cast<BYTE*>(bytes.data()), &raw.size);
    if (raw.error == ERROR_SUCCESS && (raw.type == REG_SZ || raw.type == REG_EXPAND_SZ || raw.type == REG_MULTI_SZ)) {
        raw.text = Utf8OfAnsi(bytes.data());
    }
    return raw;
}

}  // namespace tool::doctor
