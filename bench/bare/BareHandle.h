#pragma once

#include <cstddef>
#include <cstdint>

// Handles of the bare agent are no addresses: a text's handle is its length, any other one is the same for all.
template <class Handle>
Handle* HandleOfLength(size_t length) noexcept {
    return reinterpret_cast<Handle*>(static_cast<uintptr_t>(length + 1));
}

template <class Handle>
size_t LengthOf(const Handle* handle) noexcept {
    return static_cast<size_t>(reinterpret_cast<uintptr_t>(handle)) - 1;
}

template <class Handle>
Handle* AnyHandle() noexcept {
    return HandleOfLength<Handle>(0);
}
