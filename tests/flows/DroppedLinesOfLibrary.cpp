#include "flows/DroppedLines.h"

DroppedLines::DroppedLines(std::function<void(const std::string& text)> /*note*/) {}

DroppedLines::~DroppedLines() = default;

bool DroppedLines::AreSeen() noexcept {
    return false;
}
