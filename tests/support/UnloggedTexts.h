#pragma once

#include "support/LineLog.h"
#include "values/UnloggedText.h"

// The texts that the bridge composes and sends nowhere, while it lives. One at a time.
class UnloggedTexts {
public:
    UnloggedTexts() {
        current = this;
        SetUnloggedTextListener([](const std::wstring& text) { current->log.Add(Narrow(text)); });
    }
    ~UnloggedTexts() { SetUnloggedTextListener(nullptr); }
    UnloggedTexts(const UnloggedTexts&) = delete;
    UnloggedTexts& operator=(const UnloggedTexts&) = delete;

    LineLog log;

private:
    static inline UnloggedTexts* current = nullptr;
};
