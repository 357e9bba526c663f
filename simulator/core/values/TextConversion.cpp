#include "simulator/core/values/TextConversion.h"

#include <cstddef>
#include <cstdint>

namespace simulator {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t lastCharacter = 0x10FFFF;
constexpr char32_t firstBeyondOneUnit = 0x10000;
constexpr bool wideIsUtf16 = sizeof(wchar_t) == 2;

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// A first byte of a character in UTF-8: how many bytes follow it, and the bounds of the first of those. The bounds rule
// out overlong forms, surrogates and numbers beyond the last character.
struct Lead {
    size_t following = 0;
    char32_t bits = replacement;
    uint8_t low = 0x80;
    uint8_t high = 0xBF;
};

Lead ReadLead(uint8_t byte) {
    const char32_t bits = byte;
    if (byte < 0x80) {
        return {0, bits};
    }
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {1, bits & 0x1F};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {2, bits & 0x0F, uint8_t(byte == 0xE0 ? 0xA0 : 0x80), uint8_t(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {3, bits & 0x07, uint8_t(byte == 0xF0 ? 0x90 : 0x80), uint8_t(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {0, replacement};
}

char32_t NextOfUtf8(std::string_view text, size_t& position) {
    const Lead lead = ReadLead(static_cast<uint8_t>(text[position++]));
    char32_t character = lead.bits;
    for (size_t i = 0; i < lead.following; ++i) {
        const uint8_t byte = position < text.size() ? static_cast<uint8_t>(text[position]) : uint8_t{0};
        const bool fits = i == 0 ? byte >= lead.low && byte <= lead.high : byte >= 0x80 && byte <= 0xBF;
        if (!fits) {
            return replacement;
        }
        character = (character << 6) | (byte & 0x3F);
        ++position;
    }
    return character;
}

char32_t NextOfWide(std::wstring_view text, size_t& position) {
    const auto unit = static_cast<char32_t>(text[position++]);
    if (wideIsUtf16 && IsHighSurrogate(unit) && position < text.size()) {
        const auto next = static_cast<char32_t>(text[position]);
        if (IsLowSurrogate(next)) {
            ++position;
            return firstBeyondOneUnit + ((unit - 0xD800) << 10) + (next - 0xDC00);
        }
    }
    return IsHighSurrogate(unit) || IsLowSurrogate(unit) || unit > lastCharacter ? replacement : unit;
}

void AppendWide(std::wstring& out, char32_t character) {
    if (wideIsUtf16 && character >= firstBeyondOneUnit) {
        const char32_t rest = character - firstBeyondOneUnit;
        out += static_cast<wchar_t>(0xD800 + (rest >> 10));
        out += static_cast<wchar_t>(0xDC00 + (rest & 0x3FF));
    } else {
        out += static_cast<wchar_t>(character);
    }
}

void AppendUtf8(std::string& out, char32_t character) {
    const auto append = [&out](char32_t byte) { out += static_cast<char>(static_cast<uint8_t>(byte)); };
    const auto tail = [&](int shift) { append(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | (character >> 6));
        tail(0);
    } else if (character < firstBeyondOneUnit) {
        append(0xE0 | (character >> 12));
        tail(6);
        tail(0);
    } else {
        append(0xF0 | (character >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

}  // namespace

std::wstring WideFromUtf8(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    for (size_t position = 0; position < text.size();) {
        AppendWide(out, NextOfUtf8(text, position));
    }
    return out;
}

std::string Utf8FromWide(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t position = 0; position < text.size();) {
        AppendUtf8(out, NextOfWide(text, position));
    }
    return out;
}

}  // namespace simulator
