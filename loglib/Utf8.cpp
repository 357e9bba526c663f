#include "loglib/Utf8.h"

#include <windows.h>

#include <limits>
#include <stdexcept>

namespace bridge {

namespace {

// `convert(length, buffer, size)` calls the system's function for the text: it answers the size that it needs when
// `size` is 0, else what it has written, and 0 when it fails.
template <class Converted, class Character, class Convert>
Converted ConvertAll(std::basic_string_view<Character> text, const Convert& convert) {
    if (text.empty()) {
        return {};
    }
    if (text.size() > static_cast<size_t>(std::numeric_limits<int>::max())) {
        throw std::length_error("the text is too long to be converted");
    }
    const int length = static_cast<int>(text.size());
    const int size = convert(length, nullptr, 0);
    Converted converted(static_cast<size_t>(size), typename Converted::value_type{});
    if (size == 0 || convert(length, converted.data(), size) != size) {
        throw std::runtime_error("the text cannot be converted");
    }
    return converted;
}

}  // namespace

std::wstring WideFromUtf8(std::string_view text) {
    return ConvertAll<std::wstring>(text, [text](int length, wchar_t* buffer, int size) {
        return ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, buffer, size);
    });
}

std::string Utf8FromWide(std::wstring_view text) {
    return ConvertAll<std::string>(text, [text](int length, char* buffer, int size) {
        return ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, buffer, size, nullptr, nullptr);
    });
}

}  // namespace bridge
