#pragma once

#include <string_view>

namespace checking {

// Whether the calling thread holds the system's loader lock, as it does in DllMain.
bool IsUnderLoaderLock() noexcept;

// Reports a call of `function` under it.
void LookAtLoaderLock(const char* function, std::string_view productId) noexcept;

}  // namespace checking
