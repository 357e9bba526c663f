#include "support/ModuleImports.h"

#include <windows.h>

#include <stdexcept>

namespace {

const IMAGE_IMPORT_DESCRIPTOR* FirstLibrary(const BYTE* image) {
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    return reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + imports.VirtualAddress);
}

}  // namespace

std::vector<ModuleImport> ImportsOf(const char* library) {
    auto* const image = reinterpret_cast<BYTE*>(::GetModuleHandleA(library));
    if (image == nullptr) {
        throw std::logic_error(std::string(library) + " is not loaded");
    }
    std::vector<ModuleImport> found;
    for (const auto* imported = FirstLibrary(image); imported->Name != 0; ++imported) {
        const auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(image + imported->OriginalFirstThunk);
        auto* slot = reinterpret_cast<void**>(image + imported->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
                const auto* byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(image + name->u1.AddressOfData);
                found.push_back({reinterpret_cast<const char*>(byName->Name), slot});
            }
        }
    }
    return found;
}
