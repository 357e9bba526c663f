#pragma once

#include "support/LineLog.h"
#include "values/DroppedText.h"

// The texts that the bridge composes and sends nowhere, while it lives. One at a time.
class DroppedTexts {
public:
    DroppedTexts() {
        current = this;
        SetDroppedTextListener([](const std::wstring& text) { current->log.Add(Narrow(text)); });
    }
    ~DroppedTexts() { SetDroppedTextListener(nullptr); }
    DroppedTexts(const DroppedTexts&) = delete;
    DroppedTexts& operator=(const DroppedTexts&) = delete;

    LineLog log;

private:
    static inline DroppedTexts* current = nullptr;
};
