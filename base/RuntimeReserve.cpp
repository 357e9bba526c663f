// Memory for the C++ runtime of a Windows DLL when the system has none left.
//
// To throw, this runtime needs memory: for the exception, once for each thread, and once for the lock of its own
// emergency memory. Where it gets none it ends the process, although what was thrown would have been caught and
// answered. So the runtime's requests, which are small, are served from a reserve when the system refuses them. The
// linker sends the calls of the C allocation functions here (--wrap). What the bridge itself allocates, through `new`
// and AllocateBlock, has no part in the reserve and fails as it must.
#include <malloc.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <new>

// The linker makes these names.
// NOLINTBEGIN(bugprone-reserved-identifier)

extern "C" {

void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* memory, size_t size);
void __real_free(void* memory);

void* __wrap_malloc(size_t size);
void* __wrap_calloc(size_t count, size_t size);
void* __wrap_realloc(void* memory, size_t size);
void __wrap_free(void* memory);
void* __wrap_AllocateBlock(size_t size);

}  // extern "C"

namespace {

// Enough for 32 threads that throw their first exception at once: each needs four places at most.
constexpr size_t places = 128;
constexpr size_t placeSize = 1024;

struct alignas(std::max_align_t) Place {
    std::array<std::byte, placeSize> bytes;
};

std::array<Place, places> reserve;
std::array<std::atomic<bool>, places> isTaken;

// Returns a zero-filled place; null when `size` is more than a place holds, or every place is taken.
void* TakePlace(size_t size) noexcept {
    for (size_t i = 0; size <= placeSize && i < places; ++i) {
        if (!isTaken[i].exchange(true, std::memory_order_acquire)) {
            return std::memset(&reserve[i], 0, sizeof(Place));
        }
    }
    return nullptr;
}

bool IsPlace(const void* memory) noexcept {
    const auto* const place = static_cast<const Place*>(memory);
    return place >= reserve.data() && place < reserve.data() + places;
}

void GiveBackPlace(void* memory) noexcept {
    const auto index = static_cast<size_t>(static_cast<Place*>(memory) - reserve.data());
    isTaken[index].store(false, std::memory_order_release);
}

// Copies what `memory` holds to `block`, frees `memory` and returns `block`. A null `block` changes nothing.
void* MoveTo(void* block, void* memory, size_t size) noexcept {
    if (block != nullptr) {
        std::memcpy(block, memory, std::min(size, IsPlace(memory) ? placeSize : ::_msize(memory)));
        __wrap_free(memory);
    }
    return block;
}

}  // namespace

void* __wrap_malloc(size_t size) {
    void* const memory = __real_malloc(size);
    return memory != nullptr ? memory : TakePlace(size);
}

void* __wrap_calloc(size_t count, size_t size) {
    void* const memory = __real_calloc(count, size);
    const bool isSmall = size == 0 || count <= placeSize / size;
    return memory != nullptr || !isSmall ? memory : TakePlace(count * size);
}

void* __wrap_realloc(void* memory, size_t size) {
    if (memory == nullptr) {
        return __wrap_malloc(size);
    }
    if (IsPlace(memory)) {
        return size <= placeSize ? memory : MoveTo(__real_malloc(size), memory, size);
    }
    void* const moved = __real_realloc(memory, size);
    return moved != nullptr || size == 0 ? moved : MoveTo(TakePlace(size), memory, size);
}

void __wrap_free(void* memory) {
    if (IsPlace(memory)) {
        GiveBackPlace(memory);
    } else {
        __real_free(memory);
    }
}

void* __wrap_AllocateBlock(size_t size) {
    return __real_calloc(1, size);
}

void* operator new(size_t size) {
    void* const memory = __real_malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return __real_malloc(size != 0 ? size : 1);
}

void operator delete(void* memory) noexcept {
    __real_free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    __real_free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    __real_free(memory);
}

// NOLINTEND(bugprone-reserved-identifier)
