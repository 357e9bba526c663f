#include "bench/harness/Interlocked.h"

#include <windows.h>

namespace bench {

namespace {

constexpr DWORD trapFlag = 0x100;

size_t counted = 0;
volatile bool isStepping = false;

// Whether the instruction has the lock prefix, or is an exchange with memory, which is locked without one.
bool IsInterlocked(const BYTE* instruction) {
    for (;; ++instruction) {
        const BYTE byte = *instruction;
        if (byte == 0xF0) {
            return true;
        }
        const bool isPrefix = byte == 0x66 || byte == 0xF2 || byte == 0xF3 || (byte & 0xF0) == 0x40;
        if (!isPrefix) {
            const bool isExchange = byte == 0x86 || byte == 0x87;
            return isExchange && (instruction[1] & 0xC0) != 0xC0;
        }
    }
}

LONG CALLBACK Step(EXCEPTION_POINTERS* exception) {
    if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_SINGLE_STEP) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    CONTEXT& context = *exception->ContextRecord;
    counted += IsInterlocked(reinterpret_cast<const BYTE*>(context.Rip)) ? 1U : 0U;
    context.EFlags = isStepping ? context.EFlags | trapFlag : context.EFlags & ~trapFlag;
    return EXCEPTION_CONTINUE_EXECUTION;
}

// Whether the next instructions are run one by one.
void SetTrapFlag() {
    asm volatile("pushfq\n\torq $0x100, (%%rsp)\n\tpopfq" ::: "memory", "cc");
}

// Only when the step after this instruction has come is the flag cleared for good: the handler sets it again.
void ClearTrapFlag() {
    isStepping = false;
    asm volatile("nop" ::: "memory");
}

}  // namespace

size_t CountInterlocked(const std::function<void()>& body) {
    void* const handler = ::AddVectoredExceptionHandler(1, Step);
    counted = 0;
    isStepping = true;
    SetTrapFlag();
    body();
    ClearTrapFlag();
    ::RemoveVectoredExceptionHandler(handler);
    return counted;
}

}  // namespace bench
