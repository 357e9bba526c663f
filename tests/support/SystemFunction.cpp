#include "support/SystemFunction.h"

#include <windows.h>

#include <stdexcept>

void** FindImport(const void* function) {
    auto* const image = reinterpret_cast<BYTE*>(::GetModuleHandleW(nullptr));
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + imports.VirtualAddress);
    for (; library->Name != 0; ++library) {
        for (void** slot = reinterpret_cast<void**>(image + library->FirstThunk); *slot != nullptr; ++slot) {
            if (*slot == function) {
                return slot;
            }
        }
    }
    throw std::logic_error("this program does not import that function");
}

void SetImport(void** import, void* function) {
    DWORD protection = 0;
    ::VirtualProtect(import, sizeof *import, PAGE_READWRITE, &protection);
    ::InterlockedExchangePointer(import, function);
    ::VirtualProtect(import, sizeof *import, protection, &protection);
}
