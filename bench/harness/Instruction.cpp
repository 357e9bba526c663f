#include "bench/harness/Instruction.h"

#include <cstring>

namespace bench {

namespace {

template <class Number>
int64_t Displacement(const BYTE* place) {
    Number number;
    std::memcpy(&number, place, sizeof number);
    return number;
}

}  // namespace

Instruction::Instruction(const CONTEXT& contextBefore) : context(contextBefore) {
    const BYTE* next = reinterpret_cast<const BYTE*>(context.Rip);
    for (;; ++next) {
        hasLockPrefix = hasLockPrefix || *next == 0xF0;
        hasShortOperands = hasShortOperands || *next == 0x66;
        const bool isExtension = (*next & 0xF0) == 0x40;
        extension = isExtension ? *next : extension;
        if (!isExtension && *next != 0xF0 && *next != 0x66 && *next != 0xF2 && *next != 0xF3) {
            break;
        }
    }
    isTwoByteOpcode = *next == 0x0F;
    next += isTwoByteOpcode ? 1 : 0;
    opcode = *next;
    operands = next + 1;
}

size_t Instruction::ImmediateSize() const {
    constexpr BYTE bitTest = 0xBA;
    if (isTwoByteOpcode) {
        return opcode == bitTest ? 1 : 0;
    }
    const bool isLong = opcode == 0x81;
    const bool isByte = opcode == 0x80 || opcode == 0x83;
    return isLong ? (hasShortOperands ? 2 : 4) : (isByte ? 1 : 0);
}

// The addressing forms of the architecture's manual: a base register with an index, a displacement, or both; or a
// displacement from the next instruction.
uintptr_t Instruction::MemoryAddress() const {
    constexpr uint32_t none = 4;
    const uint32_t mode = *operands >> 6U;
    uint32_t base = *operands & 7U;
    const BYTE* next = operands + 1;
    uint64_t address = 0;
    if (base == none) {
        const uint32_t index = ((*next >> 3U) & 7U) | ((extension & 2U) << 2U);
        address += index != none ? Register(index) << (*next >> 6U) : 0;
        base = *next & 7U;
        ++next;
    }
    const bool hasNoBase = mode == 0 && base == 5;
    const bool isFromNext = hasNoBase && (*operands & 7U) == 5;
    if (!hasNoBase) {
        address += Register(base | ((extension & 1U) << 3U));
    }
    if (mode == 1) {
        return address + static_cast<uint64_t>(Displacement<int8_t>(next));
    }
    if (mode == 2 || hasNoBase) {
        address += static_cast<uint64_t>(Displacement<int32_t>(next));
        next += sizeof(int32_t);
    }
    return address + (isFromNext ? reinterpret_cast<uintptr_t>(next) + ImmediateSize() : 0);
}

}  // namespace bench
