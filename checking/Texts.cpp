#include "checking/Texts.h"

#include <windows.h>

#include <cwctype>

namespace checking {

std::string Narrow(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

std::string Narrow(const wchar_t* text) {
    return text != nullptr ? Narrow(std::wstring_view(text)) : std::string();
}

std::wstring Wide(std::string_view text) {
    const int length = static_cast<int>(text.size());
    const int size = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<size_t>(size), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
    return wide;
}

bool IsUtf8(std::string_view text) noexcept {
    return text.empty() || ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(),
                                                 static_cast<int>(text.size()), nullptr, 0) != 0;
}

std::wstring Folded(std::wstring_view id) {
    std::wstring folded;
    for (const wchar_t unit : id) {
        if (std::iswspace(unit) == 0) {
            folded += static_cast<wchar_t>(std::towlower(unit));
        }
    }
    return folded;
}

}  // namespace checking
