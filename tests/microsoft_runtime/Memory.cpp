// operator new and delete.
#include <malloc.h>
#include <stdlib.h>

#include <new>

void* operator new(size_t size) {
    void* const memory = malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new(size_t size, const std::nothrow_t& /*how*/) noexcept {
    return malloc(size != 0 ? size : 1);
}

void* operator new[](size_t size) {
    return operator new(size);
}

void* operator new[](size_t size, const std::nothrow_t& how) noexcept {
    return operator new(size, how);
}

void operator delete(void* memory) noexcept {
    free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    free(memory);
}

void operator delete(void* memory, const std::nothrow_t& /*how*/) noexcept {
    free(memory);
}

void operator delete[](void* memory) noexcept {
    free(memory);
}

void operator delete[](void* memory, size_t /*size*/) noexcept {
    free(memory);
}

void* operator new(size_t size, std::align_val_t alignment) {
    void* const memory = _aligned_malloc(size != 0 ? size : 1, static_cast<size_t>(alignment));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    _aligned_free(memory);
}

void operator delete(void* memory, size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    _aligned_free(memory);
}
