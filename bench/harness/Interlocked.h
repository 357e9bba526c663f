#pragma once

#include <cstddef>
#include <functional>

namespace bench {

// How many interlocked instructions the calling thread runs in `body`, the system's locks included: each takes its
// memory away from the other processors. Runs it instruction by instruction; it must not sleep.
size_t CountInterlocked(const std::function<void()>& body);

}  // namespace bench
