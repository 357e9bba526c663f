// Writes that the policy code does on the machine itself: names of policies in the registry, and events in the host's
// log.
#pragma once

#include <cstdint>

namespace bridge {

// Writes the name of the policy object in force into HKEY_LOCAL_MACHINE\SOFTWARE\Corvane\Endpoint\AV, where other local
// components look for it, and logs whether that went well. Any thread.
//
// category  decides the registry value; compared exactly. For null, and for a category that has none, nothing happens.
// name      zero-terminated, any length. Null is logged as a failure, and the value stays as it was.
//
// A key that cannot be opened, because the product is not installed, is no failure: nothing is written or logged.
void StorePolicyName(const wchar_t* category, const wchar_t* name) noexcept;

// Logs that the agent answered `code` when a policy's digest was asked for. Any thread.
void LogDigestFailure(int32_t code) noexcept;

}  // namespace bridge
