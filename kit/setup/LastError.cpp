#include "kit/setup/LastError.h"

#include <algorithm>
#include <cstring>

namespace kit {

namespace {

// Of a fixed size, so that a text for "out of memory" needs none.
thread_local char lastError[1024] = "";

}  // namespace

void SetLastErrorText(const char* text) noexcept {
    const size_t length = std::min(std::strlen(text), sizeof(lastError) - 1);
    std::copy_n(text, length, lastError);
    lastError[length] = '\0';
}

const char* LastErrorText() noexcept {
    return lastError;
}

}  // namespace kit
