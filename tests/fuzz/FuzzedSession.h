#pragma once

#include <functional>

#include "VsMsgbus/LogSink.h"
#include "fuzz/FuzzedAgent.h"
#include "msgbus/instance/VsMsgbus.h"

// The one product of a session.
inline constexpr char fuzzedProduct[] = "FUZZED1000";
inline constexpr wchar_t fuzzedProductWide[] = L"FUZZED1000";

// A sink that reads what it is given.
class ReadingSink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int /*level*/, const wchar_t* text) override { Touch(text); }
};

// The bridge while the fuzzed agent runs, with a product of all four services.
struct FuzzedSession {
    FuzzInput& input;
    FuzzedAgent& agent;
    VsMsgbus& bridge;
    ReadingSink& sink;
};

// Runs `body` in a session of that input, from the agent's start to its end. The process ends when a handle is left, or
// the bridge named one that it must not.
void RunSession(const uint8_t* data, size_t size, const std::function<void(FuzzedSession& session)>& body);
