#include "loglib/LogLine.h"

#include <algorithm>
#include <string_view>

#include "loglib/Utf8.h"

namespace bridge {

namespace {

constexpr wchar_t hexDigits[] = L"0123456789ABCDEF";

template <class Number>
std::wstring Padded(Number number, size_t width) {
    const std::wstring digits = std::to_wstring(number);
    return std::wstring(width - std::min(width, digits.size()), L'0') + digits;
}

// As in "2026-03-01T12:00:00.250Z".
std::wstring TimeText(std::chrono::system_clock::time_point time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::milliseconds>(time - day));
    return Padded(static_cast<int>(date.year()), 4) + L'-' + Padded(static_cast<unsigned>(date.month()), 2) + L'-' +
           Padded(static_cast<unsigned>(date.day()), 2) + L'T' + Padded(clock.hours().count(), 2) + L':' +
           Padded(clock.minutes().count(), 2) + L':' + Padded(clock.seconds().count(), 2) + L'.' +
           Padded(clock.subseconds().count(), 3) + L'Z';
}

// Whether a viewer may end a line there, or show something else than the text.
bool IsControl(wchar_t character) {
    const auto code = static_cast<uint32_t>(character);
    return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x2028 || code == 0x2029;
}

void AppendEscape(std::wstring& line, wchar_t character) {
    const auto code = static_cast<uint32_t>(character);
    switch (character) {
        case L'\n': line += L"\\n"; return;
        case L'\r': line += L"\\r"; return;
        case L'\t': line += L"\\t"; return;
        default: break;
    }
    const unsigned digits = code > 0xFF ? 4 : 2;
    line += digits == 4 ? L"\\u" : L"\\x";
    for (unsigned digit = digits; digit > 0; --digit) {
        line += hexDigits[(code >> (4 * (digit - 1))) & 0xF];
    }
}

void AppendEscaped(std::wstring& line, std::wstring_view text) {
    for (const wchar_t character : text) {
        if (IsControl(character)) {
            AppendEscape(line, character);
        } else {
            line += character;
        }
    }
}

}  // namespace

std::wstring LogLine(const LogUtils::LogRecord& event, std::chrono::system_clock::time_point time, uint32_t processId) {
    std::wstring line =
        TimeText(time) + L' ' + std::to_wstring(processId) + L" severity=" + std::to_wstring(event.severity) + L' ';
    AppendEscaped(line, event.component);
    line += L' ';
    AppendEscaped(line, WideFromUtf8(event.sourceFile));
    line += L'(' + std::to_wstring(event.sourceLine) + L"): ";
    AppendEscaped(line, event.text);
    return line + L"\r\n";
}

}  // namespace bridge
