#pragma once

namespace checking {

// Has a look taken when nothing has changed for VSMSGBUS_CHECK_GRACE milliseconds, 5000 when that is not set: whether
// the products that are in have a log sink, and, once the agent is there, whether their masks name what is registered.
// Modules enter, register and leave in any order.
void CheckLater() noexcept;

}  // namespace checking
