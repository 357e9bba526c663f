#include "checking/trace/TraceEvent.h"

#include <array>
#include <cstdio>

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

void AppendText(std::string& json, std::string_view text) {
    json += '"';
    for (const char c : Shortened(text)) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (byte < 0x20) {
            json += "\\u00";
            json += "0123456789abcdef"[byte / 16];
            json += "0123456789abcdef"[byte % 16];
        } else {
            json += c;
        }
    }
    json += '"';
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
    return Add(name, Narrow(std::wstring_view(text, wcsnlen(text, mostOfText + 1))));
}

TraceArguments& TraceArguments::Add(const char* name, int64_t number) {
    Begin(name) += std::to_string(number);
    return *this;
}

TraceArguments& TraceArguments::Add(const char* name, bool value) {
    Begin(name) += value ? "true" : "false";
    return *this;
}

std::string TraceLine(TracePhase phase, std::string_view name, double microseconds, uint32_t process, uint32_t thread,
                      const TraceArguments& arguments) {
    std::array<char, 128> numbers{};
    const int length = std::snprintf(numbers.data(), numbers.size(), "\"ph\":\"%c\",\"ts\":%.3f,\"pid\":%u,\"tid\":%u",
                                     static_cast<char>(phase), microseconds, process, thread);
    std::string line = "{\"name\":";
    AppendText(line, name);
    line += ',';
    line.append(numbers.data(), static_cast<size_t>(length));
    if (phase == TracePhase::Instant) {
        line += ",\"s\":\"t\"";
    }
    if (!arguments.Json().empty()) {
        line.append(",\"args\":{").append(arguments.Json()).append("}");
    }
    return line.append("},\n");
}

}  // namespace checking
