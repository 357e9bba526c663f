#pragma once

namespace checking {

// Reads the pointer at the address, which may be one without memory: null when it cannot be read. A read that succeeds
// costs no more than a plain one. One that fails shows in a debugger as an access violation, which this function
// handles.
const void* ReadPointer(const void* address) noexcept;

}  // namespace checking
