#include "checking/trace/TraceEvent.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "checking/Texts.h"

namespace checking {

namespace {

constexpr size_t mostOfText = 200;

// Its first characters; none is cut in two.
std::string_view Shortened(std::string_view text) {
    size_t end = 0;
    for (size_t characters = 0; end < text.size(); ++end) {
        const bool isFirstByte = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
        if (isFirstByte && ++characters > mostOfText) {
            break;
        }
    }
    return text.substr(0, end);
}

bool IsPlain(char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\';
}

void AppendText(std::string& json, std::string_view text) {
    const std::string_view shortened = Shortened(text);
    json += '"';
    if (std::all_of(shortened.begin(), shortened.end(), &IsPlain)) {
        json.append(shortened).append(1, '"');
        return;
    }
    for (const char c : shortened) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20) {
            json += "\\u00";
            json += "0123456789abcdef"[byte / 16];
            json += "0123456789abcdef"[byte % 16];
            continue;
        }
        if (!IsPlain(c)) {
            json += '\\';
        }
        json += c;
    }
    json += '"';
}

void AppendNumber(std::string& json, int64_t number) {
    std::array<char, 24> digits{};
    json.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

// As microseconds with three decimals.
void AppendTime(std::string& json, int64_t nanoseconds) {
    constexpr int64_t perMicrosecond = 1000;
    AppendNumber(json, nanoseconds / perMicrosecond);
    const int64_t rest = nanoseconds % perMicrosecond;
    json += '.';
    for (int64_t digit = perMicrosecond / 10; digit != 0; digit /= 10) {
        json += static_cast<char>('0' + rest / digit % 10);
    }
}

}  // namespace

std::string& TraceArguments::Begin(const char* name) {
    if (!json.empty()) {
        json += ',';
    }
    json += '"';
    json += name;
    json += "\":";
    return json;
}

TraceArguments& TraceArguments::Add(const char* name, std::string_view text) {
    AppendText(Begin(name), IsUtf8(text) ? text : "(not UTF-8)");
    return *this;
}

TraceArguments& TraceArguments::Add(const char* name, const char* text) {
    if (text == nullptr) {
        Begin(name) += "null";
        return *this;
    }
    return Add(name, std::string_view(text));
}

TraceArguments& TraceArguments::Add(const char* name, const wchar_t* text) {
    if (text == nullptr) {
        Begin(name) += "null";
        return *this;
    }
    // The rest of a long text is never converted.
    constexpr size_t mostOfUnit = 3;
    std::array<char, (mostOfText + 1) * mostOfUnit> narrow;
    const size_t length = ::wcsnlen(text, mostOfText + 1);
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), narrow.data(),
                                           static_cast<int>(narrow.size()), nullptr, nullptr);
    AppendText(Begin(name), std::string_view(narrow.data(), static_cast<size_t>(size)));
    return *this;
}

TraceArguments& TraceArguments::Add(const char* name, int64_t number) {
    AppendNumber(Begin(name), number);
    return *this;
}

TraceArguments& TraceArguments::Add(const char* name, bool value) {
    Begin(name) += value ? "true" : "false";
    return *this;
}

std::string TraceLine(TracePhase phase, std::string_view name, int64_t nanoseconds, uint32_t process, uint32_t thread,
                      const TraceArguments& arguments) {
    constexpr size_t others = 100;
    std::string line;
    line.reserve(name.size() + arguments.Json().size() + others);
    line = "{\"name\":";
    AppendText(line, name);
    line.append(",\"ph\":\"").append(1, static_cast<char>(phase)).append("\",\"ts\":");
    AppendTime(line, nanoseconds);
    line += ",\"pid\":";
    AppendNumber(line, process);
    line += ",\"tid\":";
    AppendNumber(line, thread);
    if (phase == TracePhase::Instant) {
        line += ",\"s\":\"t\"";
    }
    if (!arguments.Json().empty()) {
        line.append(",\"args\":{").append(arguments.Json()).append("}");
    }
    return line.append("},\n");
}

}  // namespace checking
