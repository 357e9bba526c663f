#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "VsMsgbus.h"
#include "flows/Flow.h"
#include "support/Text.h"

// Every service.
inline constexpr uint32_t allServices =
    VsMsgbusServiceProperty | VsMsgbusServicePolicy | VsMsgbusServiceTask | VsMsgbusServiceUpdate;

// A flow that can enter the one product, and leaves at its end if it has.
class EnteringFlow : public Flow {
public:
    using Flow::Flow;
    void CleanUp() override { Exit(); }

protected:
    // The answer of Entry.
    bool Enter(uint32_t mask) {
        const bool isEntered = VsMsgbusEntry(FlowWorld::product, mask, &world.BridgeSink(), &instance);
        return isEntered;
    }
    void Exit() {
        if (VsMsgbus* const left = std::exchange(instance, nullptr)) {
            const bool isLeft = VsMsgbusExit(FlowWorld::product, left);
            if (!isLeft) {
                world.Note("Exit: false");
            }
        }
    }

    VsMsgbus* instance = nullptr;
};

// A flow of a product that has entered for the services of the mask.
template <uint32_t mask>
class EnteredFlow : public EnteringFlow {
public:
    using EnteringFlow::EnteringFlow;
    void Prepare() override {
        if (!Enter(mask)) {
            world.Note("Entry: false");
        }
    }
};

// "true" and "false".
inline std::string TextOf(bool value) {
    return value ? "true" : "false";
}

// The text of a buffer in angle brackets, with its kind where that is not that of text; the buffer is released.
inline std::string TakeBuffer(VsKitMsgbus::lpc_buffer& buffer) {
    std::string text = "kind " + std::to_string(buffer.kind);
    if (buffer.kind == VsKitMsgbus::lpc_buffer::WideText) {
        text = "<" + Narrow(std::wstring_view(static_cast<const wchar_t*>(buffer.data), buffer.length)) + ">";
    } else if (buffer.kind == VsKitMsgbus::lpc_buffer::NarrowText) {
        text = "<" + std::string(static_cast<const char*>(buffer.data), buffer.length) + ">";
    }
    buffer.Release();
    return text;
}
