#pragma once

#include <cstddef>

// While it lives, no memory is left for operator new on this thread, after `allocationsLeft` more allocations; or, when
// told so, is left again after as many `failures`. Belongs into programs that link FailingMemory.cpp, which replaces
// the operators.
class FailingMemory {
public:
    static constexpr size_t always = static_cast<size_t>(-1);

    explicit FailingMemory(size_t allocationsLeft = 0, size_t failures = always) noexcept;
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
};

// How often this thread has asked operator new for memory, in such a program.
size_t AllocationsOfThread() noexcept;
