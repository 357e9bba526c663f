#include "base/ThreadNumber.h"

#include <cstdint>
#include <new>

namespace bridge {

ThreadNumber::~ThreadNumber() {
    if (index != TLS_OUT_OF_INDEXES) {
        ::TlsFree(index);
    }
}

void ThreadNumber::Prepare() {
    if (index != TLS_OUT_OF_INDEXES) {
        return;
    }
    const DWORD allocated = ::TlsAlloc();
    if (allocated == TLS_OUT_OF_INDEXES) {
        throw std::bad_alloc();
    }
    DWORD none = TLS_OUT_OF_INDEXES;
    if (!index.compare_exchange_strong(none, allocated)) {
        // Another thread was faster.
        ::TlsFree(allocated);
    }
}

size_t ThreadNumber::Get() const noexcept {
    const DWORD current = index;
    return current != TLS_OUT_OF_INDEXES ? reinterpret_cast<uintptr_t>(::TlsGetValue(current)) : 0;
}

bool ThreadNumber::Set(size_t number) noexcept {
    const DWORD current = index;
    return current != TLS_OUT_OF_INDEXES && ::TlsSetValue(current, reinterpret_cast<void*>(number)) != FALSE;
}

}  // namespace bridge
