#include "support/FailingMemory.h"

#include <cstdlib>
#include <new>

namespace {

constexpr size_t always = FailingMemory::always;
thread_local size_t successesLeft = always;
thread_local size_t failuresLeft = 0;
thread_local size_t allocations = 0;

// One of a number that may be without end.
void CountDown(size_t& number) noexcept {
    if (number != always) {
        --number;
    }
}

void* Allocate(size_t size) noexcept {
    ++allocations;
    if (successesLeft == 0 && failuresLeft != 0) {
        CountDown(failuresLeft);
        return nullptr;
    }
    if (successesLeft != 0) {
        CountDown(successesLeft);
    }
    return std::malloc(size != 0 ? size : 1);
}

}  // namespace

FailingMemory::FailingMemory(size_t allocationsLeft, size_t failures) noexcept {
    successesLeft = allocationsLeft;
    failuresLeft = failures;
}

FailingMemory::~FailingMemory() {
    successesLeft = always;
    failuresLeft = 0;
}

size_t AllocationsOfThread() noexcept {
    return allocations;
}

void* operator new(size_t size) {
    void* const memory = Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
