#include "loglib/Utf8.h"

#include <windows.h>

#include <limits>
#include <stdexcept>

namespace bridge {

namespace {

int CheckedSize(size_t size) {
    if (size > static_cast<size_t>(std::numeric_limits<int>::max())) {
        throw std::length_error("the text is too long to be converted");
    }
    return static_cast<int>(size);
}

// `convert(buffer, size)` is the system's function: the size that it needs when `size` is 0, else what it has written,
// and 0 when it fails.
template <class Text, class Convert>
Text Converted(const Convert& convert) {
    const int size = convert(nullptr, 0);
    Text converted(static_cast<size_t>(size), typename Text::value_type{});
    if (size == 0 || convert(converted.data(), size) != size) {
        throw std::runtime_error("the text cannot be converted");
    }
    return converted;
}

}  // namespace

std::wstring WideFromUtf8(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = CheckedSize(text.size());
    return Converted<std::wstring>([&](wchar_t* buffer, int size) {
        return ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, buffer, size);
    });
}

std::string Utf8FromWide(std::wstring_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = CheckedSize(text.size());
    return Converted<std::string>([&](char* buffer, int size) {
        return ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, buffer, size, nullptr, nullptr);
    });
}

}  // namespace bridge
