#include "checking/SafeRead.h"

#include <windows.h>

#include "checking/VectoredHandler.h"

// A violation at the first instruction goes on at CheckingCannotRead.
asm(R"(
    .text
    .globl CheckingRead
CheckingRead:
    movq (%rcx), %rax
    ret
    .globl CheckingCannotRead
CheckingCannotRead:
    xorl %eax, %eax
    ret
)");

extern "C" const void* CheckingRead(const void* address) noexcept;
extern "C" void CheckingCannotRead() noexcept;

namespace checking {

namespace {

LONG NTAPI LookAtUnreadable(EXCEPTION_POINTERS* raised) {
    const EXCEPTION_RECORD& record = *raised->ExceptionRecord;
    if (record.ExceptionAddress != reinterpret_cast<const void*>(&CheckingRead) ||
        (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION && record.ExceptionCode != EXCEPTION_IN_PAGE_ERROR &&
         record.ExceptionCode != EXCEPTION_GUARD_PAGE)) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    raised->ContextRecord->Rip = reinterpret_cast<DWORD64>(&CheckingCannotRead);
    return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

const void* ReadPointer(const void* address) noexcept {
    static const VectoredHandler handler(&LookAtUnreadable);
    return handler.IsThere() ? CheckingRead(address) : nullptr;
}

}  // namespace checking
