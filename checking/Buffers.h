// The texts that modules were given in an lpc_buffer, until they release them.
#pragma once

#include <cstdint>
#include <string>

#include "VsMsgbus/LpcBuffer.h"

namespace checking {

// To be called before the bridge is given a module's buffer: what the bridge did not fill is reported and emptied,
// because the bridge would free it. Null does no harm.
void LookAtBuffer(const char* function, VsKitMsgbus::lpc_buffer* buffer) noexcept;
// To be called after it: notes what the bridge has filled.
void NoteFilled(const char* function, const VsKitMsgbus::lpc_buffer* buffer) noexcept;

// Whether the bridge may free the text: it is one of its own. Else that is reported.
bool MayRelease(const VsKitMsgbus::lpc_buffer& buffer) noexcept;

// Reports what was not released, for each function that filled it, once. It may still be released.
void ReportNotReleased() noexcept;

// The exports with such a buffer: `call()` with the looks before and after it.
template <class Call>
auto CallWithBuffer(const char* function, VsKitMsgbus::lpc_buffer* buffer, const Call& call) {
    LookAtBuffer(function, buffer);
    const auto answer = call();
    NoteFilled(function, buffer);
    return answer;
}

}  // namespace checking
