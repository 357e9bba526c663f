// The memory of a library that has a C++ runtime of its own: see give_own_runtime in cmake/Native.cmake.
#include <cstdlib>
#include <new>

void* operator new(size_t size) {
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}
