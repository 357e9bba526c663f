#include "VsMsgbus/ny_temp_buffer.h"

#include <cstdlib>
#include <cstring>

#include "base/Blocks.h"

namespace {

using FreeFunction = void (*)(void*);

constexpr uint32_t invalidArgument = 1;
constexpr uint32_t outOfMemory = 4;

FreeFunction RecordedFreeFunction(const ny_temp_buffer_t& buffer) noexcept {
    FreeFunction recorded = nullptr;
    std::memcpy(&recorded, buffer.inlineStorage, sizeof recorded);
    return recorded != nullptr ? recorded : &std::free;
}

void FreeHeapBlock(ny_temp_buffer_t& buffer) noexcept {
    if (buffer.heap != nullptr) {
        RecordedFreeFunction(buffer)(buffer.heap);
    }
    buffer.capacity = ny_temp_buffer_inline_size;
    buffer.heap = nullptr;
}

void ReleaseToFresh(ny_temp_buffer_t& buffer) noexcept {
    FreeHeapBlock(buffer);
    std::memset(buffer.inlineStorage, 0, sizeof buffer.inlineStorage);
}

const void* StorageOf(const ny_temp_buffer_t& buffer) noexcept {
    return buffer.heap != nullptr ? buffer.heap : buffer.inlineStorage;
}

}  // namespace

void ny_temp_buffer_init(ny_temp_buffer_t* buffer) noexcept {
    if (buffer != nullptr) {
        *buffer = ny_temp_buffer_t{ny_temp_buffer_inline_size, nullptr, {}};
    }
}

uint32_t ny_temp_buffer_reserve(ny_temp_buffer_t* buffer, size_t size) noexcept {
    if (buffer == nullptr) {
        return invalidArgument;
    }
    if (buffer->capacity >= size) {
        return 0;
    }
    void* block = AllocateBlock(size);
    if (block == nullptr) {
        return outOfMemory;
    }
    ReleaseToFresh(*buffer);
    const FreeFunction freeFunction = &std::free;
    std::memcpy(buffer->inlineStorage, &freeFunction, sizeof freeFunction);
    buffer->capacity = size;
    buffer->heap = block;
    return 0;
}

void* ny_temp_buffer_get(ny_temp_buffer_t* buffer) noexcept {
    if (buffer == nullptr) {
        return nullptr;
    }
    return buffer->heap != nullptr ? buffer->heap : buffer->inlineStorage;
}

size_t ny_temp_buffer_capacity(const ny_temp_buffer_t* buffer) noexcept {
    return buffer != nullptr ? buffer->capacity : 0;
}

uint32_t ny_temp_buffer_copy(ny_temp_buffer_t* dest, const ny_temp_buffer_t* source) noexcept {
    if (dest == nullptr || source == nullptr) {
        return invalidArgument;
    }
    if (dest == source) {
        return 0;
    }
    ReleaseToFresh(*dest);
    const uint32_t result = ny_temp_buffer_reserve(dest, source->capacity);
    if (result == 0) {
        std::memcpy(ny_temp_buffer_get(dest), StorageOf(*source), source->capacity);
    }
    return result;
}

void** ny_temp_buffer_address_of(ny_temp_buffer_t* buffer) noexcept {
    if (buffer == nullptr) {
        return nullptr;
    }
    ReleaseToFresh(*buffer);
    return &buffer->heap;
}

void ny_temp_buffer_uninit(ny_temp_buffer_t* buffer) noexcept {
    if (buffer != nullptr) {
        FreeHeapBlock(*buffer);
    }
}
