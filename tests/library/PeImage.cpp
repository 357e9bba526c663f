#include "library/PeImage.h"

#include <algorithm>
#include <cctype>
#include <span>

PeImage::PeImage(HMODULE module) : base(reinterpret_cast<const unsigned char*>(module)) {}

const IMAGE_DATA_DIRECTORY& PeImage::Directory(size_t index) const {
    const auto* dos = At<IMAGE_DOS_HEADER>(0);
    return At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(dos->e_lfanew))->OptionalHeader.DataDirectory[index];
}

std::vector<std::string> PeImage::ExportedNames() const {
    const auto* exports = At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
    std::vector<std::string> names;
    for (const DWORD offset : std::span(At<DWORD>(exports->AddressOfNames), exports->NumberOfNames)) {
        names.emplace_back(At<char>(offset));
    }
    std::sort(names.begin(), names.end());
    return names;
}

size_t PeImage::ExportedFunctions() const {
    const auto* exports = At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
    const std::span functions(At<DWORD>(exports->AddressOfFunctions), exports->NumberOfFunctions);
    return static_cast<size_t>(
        std::count_if(functions.begin(), functions.end(), [](DWORD offset) { return offset != 0; }));
}

std::vector<std::string> PeImage::ImportedLibraries() const {
    std::vector<std::string> libraries;
    const auto* import = At<IMAGE_IMPORT_DESCRIPTOR>(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress);
    for (; import->Name != 0; ++import) {
        std::string name = At<char>(import->Name);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        libraries.push_back(std::move(name));
    }
    return libraries;
}
