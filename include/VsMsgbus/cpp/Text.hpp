/// @file
/// Texts of the C++ layer: UTF-8 and wide, from one to the other.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vsmsgbus {

namespace detail {

/// What stands for a piece of text that is not valid.
inline constexpr char32_t replacement = 0xFFFD;

/// Takes one character off the front of `utf8`, which is not empty.
inline char32_t TakeFromUtf8(std::string_view& utf8) {
    constexpr char32_t leastOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(utf8.front());
    const size_t length = lead < 0x80 ? 1 : lead >> 5 == 6 ? 2 : lead >> 4 == 14 ? 3 : lead >> 3 == 30 ? 4 : 0;
    utf8.remove_prefix(1);
    if (length <= 1) {
        return length == 1 ? lead : replacement;
    }
    char32_t character = lead & (0x7FU >> length);
    for (size_t i = 1; i < length; ++i) {
        if (utf8.empty() || (static_cast<unsigned char>(utf8.front()) & 0xC0) != 0x80) {
            return replacement;
        }
        character = character << 6 | (static_cast<unsigned char>(utf8.front()) & 0x3FU);
        utf8.remove_prefix(1);
    }
    const bool isValid = character >= leastOfLength[length] && character <= 0x10FFFF && character >> 11 != 0x1B;
    return isValid ? character : replacement;
}

/// Takes one character off the front of `wide`, which is not empty.
inline char32_t TakeFromWide(std::wstring_view& wide) {
    const auto unit = static_cast<char32_t>(wide.front());
    wide.remove_prefix(1);
    if (unit < 0xD800 || (unit > 0xDFFF && unit <= 0x10FFFF)) {
        return unit;
    }
    const bool isPair = unit >> 10 == 0x36 && !wide.empty() && static_cast<char32_t>(wide.front()) >> 10 == 0x37;
    if (!isPair) {
        return replacement;
    }
    const auto low = static_cast<char32_t>(wide.front());
    wide.remove_prefix(1);
    return 0x10000 + ((unit & 0x3FFU) << 10) + (low & 0x3FFU);
}

inline void Append(std::wstring& wide, char32_t character) {
    if (sizeof(wchar_t) > 2 || character < 0x10000) {
        wide += static_cast<wchar_t>(character);
        return;
    }
    wide += static_cast<wchar_t>(0xD7C0 + (character >> 10));
    wide += static_cast<wchar_t>(0xDC00 + (character & 0x3FFU));
}

inline void Append(std::string& utf8, char32_t character) {
    const auto following = [&](unsigned shift) { utf8 += static_cast<char>(0x80 | (character >> shift & 0x3FU)); };
    if (character < 0x80) {
        utf8 += static_cast<char>(character);
    } else if (character < 0x800) {
        utf8 += static_cast<char>(0xC0 | character >> 6);
        following(0);
    } else if (character < 0x10000) {
        utf8 += static_cast<char>(0xE0 | character >> 12);
        following(6);
        following(0);
    } else {
        utf8 += static_cast<char>(0xF0 | character >> 18);
        following(12);
        following(6);
        following(0);
    }
}

}  // namespace detail

/// The UTF-8 text as wide text. What is not valid becomes U+FFFD.
inline std::wstring Wide(std::string_view utf8) {
    std::wstring wide;
    wide.reserve(utf8.size());
    while (!utf8.empty()) {
        detail::Append(wide, detail::TakeFromUtf8(utf8));
    }
    return wide;
}

/// The wide text as UTF-8. What is not valid becomes U+FFFD.
inline std::string Utf8(std::wstring_view wide) {
    std::string utf8;
    utf8.reserve(wide.size());
    while (!wide.empty()) {
        detail::Append(utf8, detail::TakeFromWide(wide));
    }
    return utf8;
}

/// A text that a function of this layer takes, as UTF-8 or wide; null is the empty text. Only for parameters: a wide
/// text with its terminator is referred to and not copied. A zero ends the text.
class Text {
public:
    /// UTF-8, zero-terminated or null.
    Text(const char* utf8) : Text(std::string_view(utf8 != nullptr ? utf8 : "")) {}
    /// UTF-8.
    Text(std::string_view utf8) : converted(Wide(utf8)), text(converted.c_str()) {}
    /// UTF-8.
    Text(const std::string& utf8) : Text(std::string_view(utf8)) {}
    /// Zero-terminated or null; referred to.
    Text(const wchar_t* wide) : text(wide != nullptr ? wide : L"") {}
    /// Copied, to end it with a zero.
    Text(std::wstring_view wide) : converted(wide), text(converted.c_str()) {}
    /// Referred to.
    Text(const std::wstring& wide) : text(wide.c_str()) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    /// Zero-terminated; valid as long as this object.
    const wchar_t* Terminated() const noexcept { return text; }

private:
    std::wstring converted;
    const wchar_t* text;
};

}  // namespace vsmsgbus
