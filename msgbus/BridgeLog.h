// Lines for log sinks of modules: for the process-wide one, which a module gave to VsMsgbusEntry, and for those that
// came with an interface.
#pragma once

#include "VsMsgbus/LogSink.h"
#include "values/CUniStream.h"
#include "values/ModuleInterface.h"

namespace bridge {

// The level of every line of the bridge instance, and of a failure for the sink of an interface.
inline constexpr int bridgeLogLevel = 3;
inline constexpr int failureLogLevel = 5;

// Makes `sink` the process's sink unless there is one already; null is no sink. True when it was taken.
bool OfferLogSink(VsKitMsgbus::ILogSink* sink);

// Takes the sink away and waits, at most 15 seconds, until no Write of it runs on another thread.
void ClearLogSink() noexcept;

// Null when there is none.
const VsKitMsgbus::ILogSink* CurrentLogSink() noexcept;

// Each writes a text that is not empty, at its level, if there is a sink. What the sink throws is dropped.
void WriteBridgeLog(const VsKit::CUniStream& text) noexcept;
void WriteFailure(const ModuleInterface<VsKitMsgbus::ILogSink>& sink, const VsKit::CUniStream& text) noexcept;

}  // namespace bridge
