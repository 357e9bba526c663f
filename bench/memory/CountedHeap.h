// The heap of the program, counted: every malloc, realloc and free of the program's own code, those behind operator new
// included, goes through here (the linker's --wrap).
#pragma once

#include <cstddef>

namespace bench {

// Bytes alive now, as they were asked for and rounded up as the heap does it.
size_t LiveHeapBytes() noexcept;

// While it lives, the most bytes that were alive above those at its beginning, and how many blocks were asked for.
class HeapPeak {
public:
    HeapPeak() noexcept;

    size_t Bytes() const noexcept;
    size_t Allocations() const noexcept;

private:
    size_t bytesBefore;
    size_t allocationsBefore;
};

}  // namespace bench
