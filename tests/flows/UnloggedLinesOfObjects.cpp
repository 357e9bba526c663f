#include <utility>

#include "flows/DroppedLines.h"
#include "support/LineLog.h"
#include "values/UnloggedText.h"

namespace {

std::function<void(const std::string& text)> noteDropped;

}  // namespace

DroppedLines::DroppedLines(std::function<void(const std::string& text)> note) {
    noteDropped = std::move(note);
    SetUnloggedTextListener([](const std::wstring& text) { noteDropped(Narrow(text)); });
}

DroppedLines::~DroppedLines() {
    SetUnloggedTextListener(nullptr);
    noteDropped = nullptr;
}

bool DroppedLines::AreSeen() noexcept {
    return true;
}
