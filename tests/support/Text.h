#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// UTF-8 as UTF-16; see Narrow in LineLog.h for the way back.
inline std::wstring Wide(std::string_view narrow) {
    if (narrow.empty()) {
        return {};
    }
    const int size = static_cast<int>(narrow.size());
    std::wstring wide(static_cast<size_t>(::MultiByteToWideChar(CP_UTF8, 0, narrow.data(), size, nullptr, 0)), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, narrow.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}
