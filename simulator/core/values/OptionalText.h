#pragma once

#include <optional>
#include <string>

namespace simulator {

// The text, or null when there is none.
inline const char* TextOrNull(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

}  // namespace simulator
