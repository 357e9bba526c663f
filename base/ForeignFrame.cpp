#include "base/ForeignFrame.h"

#include <windows.h>

#include <cstring>
#include <utility>

#include "base/ForeignTypes.h"

namespace bridge {

namespace {

constexpr char agentException[] = ".?AVexception@utils@ny@corvane@@";
constexpr char standardException[] = ".?AVexception@std@@";

}  // namespace

const ForeignType* ForeignThrow::FindType(const char* name) const noexcept {
    if (typeInfo == nullptr) {
        return nullptr;
    }
    const auto* const list =
        PartOfImage<ForeignTypeList>(imageBase, reinterpret_cast<const ForeignThrowInfo*>(typeInfo)->types);
    for (int32_t i = 0; list != nullptr && i < list->count; ++i) {
        const auto* const type = PartOfImage<ForeignType>(imageBase, list->types[i]);
        const auto* const typeName = PartOfImage<ForeignTypeName>(imageBase, type->name);
        if (typeName != nullptr && std::strcmp(typeName->name, name) == 0) {
            return type;
        }
    }
    return nullptr;
}

std::optional<int32_t> ForeignThrow::AgentCode() const noexcept {
    const ForeignType* const thrown = FindType(agentException);
    // The size of std::exception differs from one C++ library to the next. The agent's code comes right behind it.
    const ForeignType* const base = FindType(standardException);
    if (thrown == nullptr || base == nullptr || thrown->tableOffset >= 0) {
        return std::nullopt;
    }
    int32_t code = 0;
    std::memcpy(&code, static_cast<const std::byte*>(object) + thrown->offset + base->size, sizeof code);
    return code;
}

ForeignThrow::Destructor ForeignThrow::FindDestructor() const noexcept {
    if (typeInfo == nullptr) {
        return nullptr;
    }
    const auto* const found =
        PartOfImage<std::byte>(imageBase, reinterpret_cast<const ForeignThrowInfo*>(typeInfo)->destructor);
    return reinterpret_cast<Destructor>(reinterpret_cast<uintptr_t>(found));
}

#if defined(__MINGW32__)

// The system asks TakeForeignThrow whether the frame takes an exception. When anyone has taken one, it unwinds: it
// calls LeaveForeignFrame for every frame on the way, this one included, while all their stack is still there, and then
// goes on at 3 if it was this one. This compiler has no syntax for either.
asm(R"(
    .text
    .p2align 4
    .globl RunInForeignFrame
    .def RunInForeignFrame; .scl 2; .type 32; .endef
    .seh_proc RunInForeignFrame
RunInForeignFrame:
    subq $56, %rsp
    .seh_stackalloc 56
    .seh_endprologue
    movq %r8, 32(%rsp)
1:  movq %rcx, %rax
    movq %rdx, %rcx
    call *%rax
    nop
2:  xorl %eax, %eax
    addq $56, %rsp
    ret
3:  movl $1, %eax
    addq $56, %rsp
    ret
    .seh_handler __C_specific_handler, @except, @unwind
    .seh_handlerdata
    .long 2
    .rva 1b, 2b, LeaveForeignFrame
    .long 0
    .rva 1b, 2b, TakeForeignThrow, 3b
    .text
    .seh_endproc
)");

// The bodies of the two handlers, which reach the frame's private members through this struct.
struct ForeignFrame::Handlers {
    // The frame that RunInForeignFrame has stored on its stack.
    static ForeignFrame& FrameAt(void* stack) noexcept {
        return **reinterpret_cast<ForeignFrame**>(static_cast<std::byte*>(stack) + 32);
    }

    static bool Take(ForeignFrame& frame, const EXCEPTION_RECORD& record) noexcept {
        const ForeignThrow thrown = Read(record);
        if (!frame.Takes(thrown)) {
            return false;
        }
        frame.destructor = thrown.FindDestructor();
        frame.thrownObject = thrown.Object();
        return true;
    }

    static void Leave(ForeignFrame& frame) noexcept {
        frame.Leave();
        if (const ForeignThrow::Destructor destroy = std::exchange(frame.destructor, nullptr)) {
            destroy(frame.thrownObject);
        }
    }

private:
    // A `throw;` may come without a description: what it throws is then known to its own runtime alone.
    static ForeignThrow Read(const EXCEPTION_RECORD& record) noexcept {
        constexpr ULONG_PTR firstVersion = 0x19930520;
        constexpr ULONG_PTR lastVersion = 0x19930522;
        const ULONG_PTR* const information = record.ExceptionInformation;
        if (record.NumberParameters != 4 || information[0] < firstVersion || information[0] > lastVersion) {
            return {nullptr, nullptr, nullptr};
        }
        return {reinterpret_cast<void*>(information[1]), reinterpret_cast<const std::byte*>(information[2]),
                reinterpret_cast<const std::byte*>(information[3])};
    }
};

extern "C" {

LONG TakeForeignThrow(const EXCEPTION_POINTERS* raised, void* stack);
LONG TakeForeignThrow(const EXCEPTION_POINTERS* raised, void* stack) {
    constexpr DWORD microsoftThrow = 0xE06D7363;
    const EXCEPTION_RECORD& record = *raised->ExceptionRecord;
    if (record.ExceptionCode != microsoftThrow) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    return ForeignFrame::Handlers::Take(ForeignFrame::Handlers::FrameAt(stack), record) ? EXCEPTION_EXECUTE_HANDLER
                                                                                        : EXCEPTION_CONTINUE_SEARCH;
}

void LeaveForeignFrame(BOOLEAN isAbnormal, void* stack);
void LeaveForeignFrame(BOOLEAN /*isAbnormal*/, void* stack) {
    ForeignFrame::Handlers::Leave(ForeignFrame::Handlers::FrameAt(stack));
}

}  // extern "C"

#endif

}  // namespace bridge
