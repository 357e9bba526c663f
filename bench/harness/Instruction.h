#pragma once

#include <windows.h>

#include <cstdint>

namespace bench {

// An x86-64 instruction about to be run, as far as it is needed to tell whether it is interlocked, and where.
class Instruction {
public:
    // The context's instruction, with its registers, which must outlive the object.
    explicit Instruction(const CONTEXT& contextBefore);

    // Whether it has the lock prefix, or is an exchange with memory, which is locked without one.
    bool IsInterlocked() const { return hasLockPrefix || (IsExchange() && !HasRegisterOperand()); }

    // The address of its operand in memory. For an interlocked instruction alone.
    uintptr_t MemoryAddress() const;

private:
    bool IsExchange() const { return !isTwoByteOpcode && (opcode == 0x86 || opcode == 0x87); }
    bool HasRegisterOperand() const { return (*operands & 0xC0) == 0xC0; }
    uint64_t Register(uint32_t number) const { return (&context.Rax)[number]; }
    size_t ImmediateSize() const;

    const CONTEXT& context;
    const BYTE* operands = nullptr;  // behind the opcode
    BYTE opcode = 0;
    BYTE extension = 0;  // the REX prefix, 0 without one
    bool isTwoByteOpcode = false;
    bool hasLockPrefix = false;
    bool hasShortOperands = false;  // of two bytes
};

}  // namespace bench
