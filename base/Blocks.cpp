#include "base/Blocks.h"

#include <cstdlib>

void* AllocateBlock(size_t size) noexcept {
    return std::calloc(1, size);
}
