#include "checking/LoaderLock.h"

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "checking/Findings.h"

namespace checking {

bool IsUnderLoaderLock() noexcept {
    // Of a process with 64-bit pointers. The place has been the same since the first of them.
    constexpr size_t placeInProcessBlock = 0x110;
    using GetProcessBlock = const std::byte* (*)();
    const auto getProcessBlock = reinterpret_cast<GetProcessBlock>(
        reinterpret_cast<uintptr_t>(::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "RtlGetCurrentPeb")));
    if (getProcessBlock == nullptr) {
        return false;
    }
    const auto* const lock = *reinterpret_cast<const CRITICAL_SECTION* const*>(getProcessBlock() + placeInProcessBlock);
    return lock != nullptr && reinterpret_cast<uintptr_t>(lock->OwningThread) == ::GetCurrentThreadId();
}

void LookAtLoaderLock(const char* function, std::string_view productId) noexcept {
    if (IsUnderLoaderLock()) {
        Report(Rule::LoaderLock, productId, {function});
    }
}

}  // namespace checking
