#include "bench/memory/CountedHeap.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>

namespace {

std::atomic<size_t> alive = 0;
std::atomic<size_t> greatest = 0;
std::atomic<size_t> allocations = 0;

void* Count(void* block) noexcept {
    if (block != nullptr) {
        const size_t now = alive += ::_msize(block);
        ++allocations;
        size_t before = greatest;
        while (now > before && !greatest.compare_exchange_weak(before, now)) {
        }
    }
    return block;
}

void Discount(void* block) noexcept {
    if (block != nullptr) {
        alive -= ::_msize(block);
    }
}

}  // namespace

extern "C" {

void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);

void* __wrap_malloc(size_t size) {
    return Count(__real_malloc(size));
}

void* __wrap_calloc(size_t count, size_t size) {
    return Count(__real_calloc(count, size));
}

void* __wrap_realloc(void* block, size_t size) {
    Discount(block);
    return Count(__real_realloc(block, size));
}

void __wrap_free(void* block) {
    Discount(block);
    __real_free(block);
}

}  // extern "C"

namespace bench {

size_t LiveHeapBytes() noexcept {
    return alive;
}

HeapPeak::HeapPeak() noexcept : bytesBefore(alive), allocationsBefore(allocations) {
    greatest = bytesBefore;
}

size_t HeapPeak::Bytes() const noexcept {
    return greatest - bytesBefore;
}

size_t HeapPeak::Allocations() const noexcept {
    return allocations - allocationsBefore;
}

}  // namespace bench
