#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace bench {

// The cache lines of the interlocked instructions that the calling thread runs in `body`, the system's locks included,
// one for each in turn: each takes its line away from the other processors. Runs the body instruction by instruction;
// it must not sleep. Raises std::runtime_error when there are too many to note.
std::vector<uintptr_t> InterlockedLines(const std::function<void()>& body);

// How many of `lines` are among `others`, too.
size_t CountShared(const std::vector<uintptr_t>& lines, const std::vector<uintptr_t>& others);

}  // namespace bench
