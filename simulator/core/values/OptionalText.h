#pragma once

#include <optional>
#include <string>

namespace simulator {

// What is handed out for a text that may be lacking: null when it is.
inline const char* TextOrNull(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

}  // namespace simulator
