#pragma once

#include <string>

#include "VsMsgbus/LogSink.h"
#include "support/HeldLocks.h"
#include "support/LineLog.h"

// A module's log sink that keeps what is written, each as "<level>: <text>".
class CapturingSink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int level, const wchar_t* text) override {
        ExpectNoLockHeld("Write");
        log.Add(std::to_string(level) + ": " + Narrow(text));
    }

    LineLog log;
};
