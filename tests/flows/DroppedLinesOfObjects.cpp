#include <utility>

#include "flows/DroppedLines.h"
#include "support/LineLog.h"
#include "values/DroppedText.h"

namespace {

std::function<void(const std::string& text)> noteDropped;

}  // namespace

DroppedLines::DroppedLines(std::function<void(const std::string& text)> note) {
    noteDropped = std::move(note);
    SetDroppedTextListener([](const std::wstring& text) { noteDropped(Narrow(text)); });
}

DroppedLines::~DroppedLines() {
    SetDroppedTextListener(nullptr);
    noteDropped = nullptr;
}

bool DroppedLines::AreSeen() noexcept {
    return true;
}
