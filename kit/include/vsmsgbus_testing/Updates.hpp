/// @file
/// The questions and notices of the agent's updater to a product.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

namespace vsmsgbus::testing {

/// An update that a product is told of: the agent's texts in its own order, and its number.
struct UpdateNotice {
    std::string second = {};  ///< the agent's second text
    std::string third = {};   ///< the agent's third text
    std::string fourth = {};  ///< the agent's fourth text
    uint32_t number = 0;      ///< the agent's number
};

namespace detail {

/// The text as JSON has it, with its quotes.
inline std::string Quoted(const std::string& text) {
    constexpr char digits[] = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            quoted += '\\';
            quoted += character;
        } else if (code < 0x20) {
            quoted += "\\u00";
            quoted += digits[code >> 4];
            quoted += digits[code & 15U];
        } else {
            quoted += character;
        }
    }
    return quoted + '"';
}

/// An object whose members are texts, open: without its closing brace.
inline std::string OpenObject(std::initializer_list<std::pair<const char*, std::string>> members) {
    std::string json;
    for (const auto& [name, value] : members) {
        json += (json.empty() ? "{" : ", ") + Quoted(name) + ": " + Quoted(value);
    }
    return json;
}

}  // namespace detail

}  // namespace vsmsgbus::testing
