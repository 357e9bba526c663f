/// @file
/// Dynamic-library primitives.
#pragma once

#include <cstdint>

/// An opened library. Null when closed.
typedef struct ny_dl {
    void* module;  ///< the operating system's handle
} ny_dl_t;

extern "C" {

/// Opens the library file at `path` (text in the ANSI code page). `flags` are LoadLibraryExA's; 0 stands for
/// LOAD_WITH_ALTERED_SEARCH_PATH: what the library depends on is looked up in its own folder.
/// @returns 0 with the handle in `lib`, which the caller closes with ny_dl_close; 1 when path or lib is null; otherwise
/// the operating system's error code, with a null handle in `lib`.
uint32_t ny_dl_open(const char* path, unsigned flags, ny_dl_t* lib) noexcept;

/// The address of an exported function, or null when it is not exported or when lib, its handle or name is null.
void* ny_dl_sym(ny_dl_t* lib, const char* name) noexcept;

/// Closes the library and sets the handle to null. A null lib and a closed one are left alone.
void ny_dl_close(ny_dl_t* lib) noexcept;

/// Writes the system's text for the calling thread's last error code into `buffer` of `size` bytes. Returns 0; 1, with
/// nothing written, when buffer is null or size is below 260. A code without a text gives an empty one.
uint32_t ny_dl_error(char* buffer, int size) noexcept;

}  // extern "C"
