// The texts that modules were given in an lpc_buffer, until they release them.
#pragma once

#include <cstdint>
#include <string>

#include "VsMsgbus/LpcBuffer.h"

namespace checking {

// To be called before the bridge is given a module's buffer. A text in it that the bridge did not put there is
// reported, and the buffer emptied, because the bridge would free that text. Null does no harm.
void LookAtBuffer(const char* function, VsKitMsgbus::lpc_buffer* buffer) noexcept;
// To be called after the bridge's function: notes the text that it has put into the buffer.
void NoteFilled(const char* function, const VsKitMsgbus::lpc_buffer* buffer) noexcept;

// Whether the bridge may free the text, because it has made it. Reports a text that it has not made or has freed
// already.
bool MayRelease(const VsKitMsgbus::lpc_buffer& buffer) noexcept;

// Reports the texts that are not released, once, as a number for each product and function. They may still be released.
void ReportNotReleased() noexcept;

// Runs `call()`, which fills the buffer, with the looks before and after it.
template <class Call>
auto CallWithBuffer(const char* function, VsKitMsgbus::lpc_buffer* buffer, const Call& call) {
    LookAtBuffer(function, buffer);
    const auto answer = call();
    NoteFilled(function, buffer);
    return answer;
}

}  // namespace checking
