// What the compiler expects of a C runtime, which this module does not have.
#include <stddef.h>

extern "C" {

// What a slot without a function holds.
int _purecall() {
    __builtin_trap();
}

// Looked for by the linker when numbers with a point occur.
extern const int _fltused;
const int _fltused = 0;

void* memset(void* destination, int value, size_t size) {
    for (size_t i = 0; i < size; ++i) {
        static_cast<unsigned char*>(destination)[i] = static_cast<unsigned char>(value);
    }
    return destination;
}

void* memcpy(void* destination, const void* source, size_t size) {
    for (size_t i = 0; i < size; ++i) {
        static_cast<unsigned char*>(destination)[i] = static_cast<const unsigned char*>(source)[i];
    }
    return destination;
}

}  // extern "C"

// Deletes what interfaces with a destructor are deleted with; nobody does.
void operator delete(void* /*block*/, size_t /*size*/) noexcept {
    __builtin_trap();
}
