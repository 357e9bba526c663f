#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace checking {

// The arguments of one event, as the members of a JSON object.
class TraceArguments {
public:
    // At most 200 characters of a text, which is UTF-8; a null text is null.
    TraceArguments& Add(const char* name, std::string_view text);
    TraceArguments& Add(const char* name, const char* text);
    TraceArguments& Add(const char* name, const wchar_t* text);
    TraceArguments& Add(const char* name, int64_t number);
    TraceArguments& Add(const char* name, bool value);

    const std::string& Json() const noexcept { return json; }

private:
    std::string& Begin(const char* name);

    std::string json;
};

enum class TracePhase : char { Begin = 'B', End = 'E', Instant = 'i' };

// One line of the record: an event of the Trace Event format, with a comma and a line end behind it.
std::string TraceLine(TracePhase phase, std::string_view name, int64_t nanoseconds, uint32_t process, uint32_t thread,
                      const TraceArguments& arguments);

}  // namespace checking
