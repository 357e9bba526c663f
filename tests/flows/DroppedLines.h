#pragma once

#include <functional>
#include <string>

// Has `note` called with each text that the bridge composes and sends nowhere, while it lives. One at a time. The
// program that has the bridge as a library cannot see these texts; one that has its objects can.
class DroppedLines {
public:
    explicit DroppedLines(std::function<void(const std::string& text)> note);
    ~DroppedLines();
    DroppedLines(const DroppedLines&) = delete;
    DroppedLines& operator=(const DroppedLines&) = delete;

    static bool AreSeen() noexcept;
};
