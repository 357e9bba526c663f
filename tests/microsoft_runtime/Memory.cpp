// operator new and delete.
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
