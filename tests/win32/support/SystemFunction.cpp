// In the native build, imports stand in the program's global offset table, all of them filled in when it starts.
#include "support/SystemFunction.h"

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <span>
#include <stdexcept>

namespace {

// The program's table of that kind: where it is, and its size in bytes.
std::span<const Elf64_Rela> Relocations(Elf64_Sxword tableTag, Elf64_Sxword sizeTag) {
    const Elf64_Rela* table = nullptr;
    size_t size = 0;
    for (const Elf64_Dyn* entry = _DYNAMIC; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == tableTag) {
            table = reinterpret_cast<const Elf64_Rela*>(entry->d_un.d_ptr);
        } else if (entry->d_tag == sizeTag) {
            size = entry->d_un.d_val;
        }
    }
    return {table, size / sizeof(Elf64_Rela)};
}

void** FindSlot(std::span<const Elf64_Rela> relocations, const void* function) {
    for (const Elf64_Rela& relocation : relocations) {
        const auto type = ELF64_R_TYPE(relocation.r_info);
        auto* const slot = reinterpret_cast<void**>(_r_debug.r_map->l_addr + relocation.r_offset);
        if ((type == R_X86_64_JUMP_SLOT || type == R_X86_64_GLOB_DAT) && *slot == function) {
            return slot;
        }
    }
    return nullptr;
}

// The page stays writable: the loader may have more to write there.
void MakeWritable(void* place) {
    const auto pageSize = static_cast<uintptr_t>(::sysconf(_SC_PAGESIZE));
    auto* const page = reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(place) / pageSize * pageSize);
    if (::mprotect(page, pageSize, PROT_READ | PROT_WRITE) != 0) {
        throw std::logic_error("the program's imports cannot be written");
    }
}

}  // namespace

void** FindImport(const void* function) {
    for (const auto& relocations : {Relocations(DT_JMPREL, DT_PLTRELSZ), Relocations(DT_RELA, DT_RELASZ)}) {
        if (void** const slot = FindSlot(relocations, function)) {
            return slot;
        }
    }
    throw std::logic_error("this program does not import that function");
}

void SetImport(void** import, void* function) {
    MakeWritable(import);
    std::atomic_ref(*import).store(function);
}
