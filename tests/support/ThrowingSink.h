#pragma once

#include <atomic>
#include <cstddef>
#include <stdexcept>

#include "VsMsgbus/LogSink.h"

// A sink that counts its lines and fails for each.
class ThrowingSink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int /*level*/, const wchar_t* /*text*/) override {
        ++calls;
        throw std::runtime_error("the sink is full");
    }

    std::atomic<size_t> calls = 0;
};
