#pragma once

namespace checking {

// Whether the calling thread holds the system's loader lock, as it does in DllMain.
bool IsUnderLoaderLock() noexcept;

// Reports a call of `function` under it. `productId` may be null.
void LookAtLoaderLock(const char* function, const wchar_t* productId) noexcept;

}  // namespace checking
