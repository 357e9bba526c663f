// The process-wide log sink: the one that a module gave to VsMsgbusEntry.
#pragma once

#include "VsMsgbus/LogSink.h"
#include "values/CUniStream.h"

// The level of every line of the bridge instance.
inline constexpr int bridgeLogLevel = 3;

// Makes `sink` the process's sink unless there is one already; null is no sink. True when it was taken.
bool OfferLogSink(VsKitMsgbus::ILogSink* sink);

// Takes the sink away and waits, at most 15 seconds, until no Write of it runs on another thread.
void ClearLogSink() noexcept;

// Null when there is none.
const VsKitMsgbus::ILogSink* CurrentLogSink() noexcept;

// Writes a text that is not empty to the sink if there is one, at bridgeLogLevel. What the sink throws is dropped.
void WriteBridgeLog(const VsKit::CUniStream& text) noexcept;
