#include "bench/harness/Interlocked.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "bench/harness/Instruction.h"

namespace bench {

namespace {

constexpr DWORD trapFlag = 0x100;
constexpr uintptr_t cacheLineSize = 64;

// A fixed array, because the instruction that is noted may be in the middle of an allocation.
uintptr_t noted[1024];
size_t count = 0;
volatile bool isStepping = false;

LONG CALLBACK Step(EXCEPTION_POINTERS* exception) {
    if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_SINGLE_STEP) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    CONTEXT& context = *exception->ContextRecord;
    const Instruction instruction(context);
    if (instruction.IsInterlocked()) {
        if (count < std::size(noted)) {
            noted[count] = instruction.MemoryAddress() / cacheLineSize;
        }
        ++count;
    }
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

std::vector<uintptr_t> InterlockedLines(const std::function<void()>& body) {
    void* const handler = ::AddVectoredExceptionHandler(1, Step);
    count = 0;
    isStepping = true;
    SetTrapFlag();
    body();
    ClearTrapFlag();
    ::RemoveVectoredExceptionHandler(handler);
    if (count > std::size(noted)) {
        throw std::runtime_error("too many interlocked instructions");
    }
    return {noted, noted + count};
}

size_t CountShared(const std::vector<uintptr_t>& lines, const std::vector<uintptr_t>& others) {
    const auto isAmongOthers = [&](uintptr_t line) {
        return std::find(others.begin(), others.end(), line) != others.end();
    };
    return static_cast<size_t>(std::count_if(lines.begin(), lines.end(), isAmongOthers));
}

}  // namespace bench
