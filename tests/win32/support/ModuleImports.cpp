// In the native build, what a library imports stands in its relocations.
#include "support/ModuleImports.h"

#include <dlfcn.h>
#include <link.h>

#include <array>
#include <filesystem>
#include <span>
#include <stdexcept>

namespace {

const link_map* FindModule(const char* library) {
    for (const link_map* module = _r_debug.r_map; module != nullptr; module = module->l_next) {
        if (std::filesystem::path(module->l_name).filename() == library) {
            return module;
        }
    }
    throw std::logic_error(std::string(library) + " is not loaded");
}

// The dynamic section's values by tag; the loader has made addresses of those that are.
class DynamicSection {
public:
    explicit DynamicSection(const link_map& module) {
        for (const ElfW(Dyn)* entry = module.l_ld; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag >= 0 && entry->d_tag < DT_NUM) {
                values[static_cast<size_t>(entry->d_tag)] = entry->d_un.d_val;
            }
        }
    }

    template <class Entry>
    const Entry* Table(size_t tag) const {
        return reinterpret_cast<const Entry*>(values[tag]);
    }
    std::span<const ElfW(Rela)> Relocations(size_t tableTag, size_t sizeTag) const {
        return {Table<ElfW(Rela)>(tableTag), values[sizeTag] / sizeof(ElfW(Rela))};
    }

private:
    std::array<ElfW(Xword), DT_NUM> values = {};
};

}  // namespace

std::vector<ModuleImport> ImportsOf(const char* library) {
    const link_map& module = *FindModule(library);
    const DynamicSection section(module);
    const auto* symbols = section.Table<ElfW(Sym)>(DT_SYMTAB);
    const auto* names = section.Table<char>(DT_STRTAB);
    std::vector<ModuleImport> found;
    for (const auto& relocations :
         {section.Relocations(DT_JMPREL, DT_PLTRELSZ), section.Relocations(DT_RELA, DT_RELASZ)}) {
        for (const ElfW(Rela) & relocation : relocations) {
            const auto type = ELF64_R_TYPE(relocation.r_info);
            if (type == R_X86_64_JUMP_SLOT || type == R_X86_64_GLOB_DAT) {
                const ElfW(Sym)& symbol = symbols[ELF64_R_SYM(relocation.r_info)];
                found.push_back(
                    {names + symbol.st_name, reinterpret_cast<void**>(module.l_addr + relocation.r_offset)});
            }
        }
    }
    return found;
}
