#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "loglib/LogLib.h"

namespace bridge {

// An event as a line of the log, its line end included; see LogUtils::LogManager::Write. Throws when memory runs out,
// and what WideFromUtf8 throws.
std::wstring LogLine(const LogUtils::LogRecord& event, std::chrono::system_clock::time_point time, uint32_t processId);

}  // namespace bridge
