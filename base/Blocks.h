#pragma once

#include <cstddef>

// A zero-filled block of that size for a module, which is freed with `free`. Null when there is no memory.
// In C's way, so that the link of the Windows DLL can put another in its place: see RuntimeReserve.cpp.
extern "C" void* AllocateBlock(size_t size) noexcept;
