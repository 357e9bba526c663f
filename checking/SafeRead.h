#pragma once

namespace checking {

// What stands at the address, in memory that may not be there. Null when it cannot be read. Costs no more than the read
// when it can; where it cannot, a debugger shows an access violation, which is dealt with.
const void* ReadPointer(const void* address) noexcept;

}  // namespace checking
