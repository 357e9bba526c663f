#pragma once

#include <string>

// The kinds of services that the bridge has, in the order in which it lets go of them.
inline constexpr int serviceKinds[] = {256, 2048, 4096, 8192};

// The sink's line when the agent does not let go of the service of that kind, with what was let go of before it. `code`
// is what the agent answered.
inline std::string NotReleasedLine(int kind, const std::string& code) {
    std::string line = "3: ";
    for (const int before : serviceKinds) {
        if (before < kind) {
            line += "Successfully released/unregistered VsMsgbus io [" + std::to_string(before) + "]";
        }
    }
    return line + "Failed to release VsMsgbus io [" + std::to_string(kind) + "] due to exception: [" + code + "]";
}
