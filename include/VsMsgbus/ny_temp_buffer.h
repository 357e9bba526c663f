/// @file
/// A scratch buffer that needs the heap only beyond 256 bytes.
///
/// None of the functions fails the caller for a null pointer: what returns a code answers 1, what returns a pointer
/// null, what returns a size 0, and the rest do nothing.
#pragma once

#include <cstddef>
#include <cstdint>

/// Up to this size, in bytes, no heap is needed.
inline constexpr size_t ny_temp_buffer_inline_size = 256;

/// Owned by its user; to be initialised before and uninitialised after use. Not to be copied as a structure.
typedef struct ny_temp_buffer {
    size_t capacity;  ///< in bytes
    void* heap;       ///< null while the inline storage is used
    /// While `heap` is set, the first pointer-sized bytes hold the function that frees it; zero there stands for free.
    alignas(void*) unsigned char inlineStorage[ny_temp_buffer_inline_size];
} ny_temp_buffer_t;

extern "C" {

/// Sets the fresh state: capacity 256, no heap block, inline storage zeroed. What the buffer held before is not looked
/// at.
void ny_temp_buffer_init(ny_temp_buffer_t* buffer) noexcept;

/// Makes room for `size` bytes. A buffer that has it already is left as it is; otherwise a zeroed heap block of exactly
/// `size` bytes takes the place of what it held. Never shrinks. Returns 0; 4, with the buffer as it was, when memory
/// ran out.
uint32_t ny_temp_buffer_reserve(ny_temp_buffer_t* buffer, size_t size) noexcept;

/// The storage in use: the heap block if there is one, else the inline storage. Valid until the next call that changes
/// the buffer.
void* ny_temp_buffer_get(ny_temp_buffer_t* buffer) noexcept;

/// The capacity in bytes.
size_t ny_temp_buffer_capacity(const ny_temp_buffer_t* buffer) noexcept;

/// Makes `dest` a copy of `source`: its capacity and its bytes. What dest held is released. Copying a buffer onto
/// itself changes nothing. Returns 0; 4, with dest fresh, when memory ran out.
uint32_t ny_temp_buffer_copy(ny_temp_buffer_t* dest, const ny_temp_buffer_t* source) noexcept;

/// Releases the buffer to the fresh state and returns the address of its heap pointer, for a callee that allocates a
/// block itself and stores it there. The block must come from the bridge's malloc, because free takes it back.
void** ny_temp_buffer_address_of(ny_temp_buffer_t* buffer) noexcept;

/// Frees the heap block, if any, and sets capacity 256 and no block. The inline bytes are left as they are.
void ny_temp_buffer_uninit(ny_temp_buffer_t* buffer) noexcept;

}  // extern "C"
