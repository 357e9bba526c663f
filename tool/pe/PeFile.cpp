#include "tool/pe/PeFile.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>
#include <cstring>

#include "tool/files/WholeFile.h"

namespace tool {

namespace {

// No image of any use has more; a broken one may say anything.
constexpr size_t mostNames = 100'000;
constexpr size_t mostLibraries = 1'000;

}  // namespace

PeFile::PeFile(const std::filesystem::path& path) {
    if (auto bytes = ReadWholeFile(path)) {
        content = std::move(*bytes);
        isThere = true;
        ReadHeaders();
    }
}

template <class Type>
std::optional<Type> PeFile::At(size_t offset) const {
    if (offset > content.size() || content.size() - offset < sizeof(Type)) {
        return std::nullopt;
    }
    Type object;
    std::memcpy(&object, content.data() + offset, sizeof object);
    return object;
}

template <class Type>
std::optional<Type> PeFile::AtAddress(uint64_t address) const {
    const auto offset = OffsetOf(address);
    return offset ? At<Type>(*offset) : std::nullopt;
}

void PeFile::ReadHeaders() {
    const auto dos = At<IMAGE_DOS_HEADER>(0);
    if (!dos || dos->e_magic != IMAGE_DOS_SIGNATURE || dos->e_lfanew < 0) {
        return;
    }
    const auto begin = static_cast<size_t>(dos->e_lfanew);
    const auto signature = At<DWORD>(begin);
    const auto header = At<IMAGE_FILE_HEADER>(begin + sizeof(DWORD));
    if (!signature || *signature != IMAGE_NT_SIGNATURE || !header) {
        return;
    }
    machine = header->Machine;
    isLibrary = (header->Characteristics & IMAGE_FILE_DLL) != 0;
    const size_t optional = begin + sizeof(DWORD) + sizeof(IMAGE_FILE_HEADER);
    if (const auto wide = At<IMAGE_OPTIONAL_HEADER64>(optional); wide && wide->Magic == IMAGE_NT_OPTIONAL_HDR64_MAGIC) {
        expectedSize = wide->SizeOfHeaders;
        for (const IMAGE_DATA_DIRECTORY& directory : wide->DataDirectory) {
            directories.push_back({directory.VirtualAddress, directory.Size});
        }
        directories.resize(std::min<size_t>(directories.size(), wide->NumberOfRvaAndSizes));
    }
    ReadSections(optional + header->SizeOfOptionalHeader, header->NumberOfSections);
}

void PeFile::ReadSections(size_t begin, size_t count) {
    expectedSize = std::max<uint64_t>(expectedSize, begin + count * sizeof(IMAGE_SECTION_HEADER));
    for (size_t i = 0; i < count; ++i) {
        const auto section = At<IMAGE_SECTION_HEADER>(begin + i * sizeof(IMAGE_SECTION_HEADER));
        if (!section) {
            return;
        }
        sections.push_back(
            {section->VirtualAddress, section->Misc.VirtualSize, section->SizeOfRawData, section->PointerToRawData});
        if (section->SizeOfRawData != 0) {
            expectedSize =
                std::max<uint64_t>(expectedSize, uint64_t{section->PointerToRawData} + section->SizeOfRawData);
        }
    }
}

std::string PeFile::MachineName() const {
    switch (machine) {
        case IMAGE_FILE_MACHINE_AMD64: return "x86-64, 64 bits";
        case IMAGE_FILE_MACHINE_I386: return "x86, 32 bits";
        case 0xAA64: return "ARM64";
        case IMAGE_FILE_MACHINE_ARMNT: return "ARM, 32 bits";
        default: return fmt::format("machine type 0x{:X}", machine);
    }
}

PeFile::Directory PeFile::DirectoryOf(size_t index) const {
    return index < directories.size() ? directories[index] : Directory();
}

std::optional<size_t> PeFile::OffsetOf(uint64_t address) const {
    for (const Section& section : sections) {
        if (address >= section.address && address - section.address < section.rawSize) {
            return static_cast<size_t>(address - section.address + section.offset);
        }
    }
    return std::nullopt;
}

std::string PeFile::TextAtAddress(uint64_t address) const {
    const auto offset = OffsetOf(address);
    if (!offset || *offset >= content.size()) {
        return {};
    }
    return content.substr(*offset, content.find('\0', *offset) - *offset);
}

std::vector<std::string> PeFile::Exports() const {
    std::vector<std::string> names;
    const auto exports = AtAddress<IMAGE_EXPORT_DIRECTORY>(DirectoryOf(IMAGE_DIRECTORY_ENTRY_EXPORT).address);
    if (!exports) {
        return names;
    }
    for (size_t i = 0; i < std::min<size_t>(exports->NumberOfNames, mostNames); ++i) {
        const auto name = AtAddress<DWORD>(exports->AddressOfNames + i * sizeof(DWORD));
        if (!name) {
            break;
        }
        names.push_back(TextAtAddress(*name));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> PeFile::ImportedNames(uint64_t names) const {
    std::vector<std::string> functions;
    for (size_t i = 0; i < mostNames; ++i) {
        const auto name = AtAddress<uint64_t>(names + i * sizeof(uint64_t));
        if (!name || *name == 0) {
            break;
        }
        if (!IMAGE_SNAP_BY_ORDINAL64(*name)) {
            functions.push_back(TextAtAddress(*name + offsetof(IMAGE_IMPORT_BY_NAME, Name)));
        }
    }
    return functions;
}

std::vector<PeImport> PeFile::Imports() const {
    std::vector<PeImport> imports;
    const uint64_t first = DirectoryOf(IMAGE_DIRECTORY_ENTRY_IMPORT).address;
    for (size_t i = 0; first != 0 && i < mostLibraries; ++i) {
        const auto import = AtAddress<IMAGE_IMPORT_DESCRIPTOR>(first + i * sizeof(IMAGE_IMPORT_DESCRIPTOR));
        if (!import || import->Name == 0) {
            break;
        }
        // Some linkers leave the names out, and they stand where the addresses go.
        const DWORD names = import->OriginalFirstThunk != 0 ? import->OriginalFirstThunk : import->FirstThunk;
        imports.push_back({TextAtAddress(import->Name), ImportedNames(names)});
    }
    AddDelayedImports(imports);
    return imports;
}

void PeFile::AddDelayedImports(std::vector<PeImport>& imports) const {
    const uint64_t first = DirectoryOf(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT).address;
    for (size_t i = 0; first != 0 && i < mostLibraries; ++i) {
        const auto import = AtAddress<IMAGE_DELAYLOAD_DESCRIPTOR>(first + i * sizeof(IMAGE_DELAYLOAD_DESCRIPTOR));
        if (!import || import->DllNameRVA == 0) {
            break;
        }
        imports.push_back({TextAtAddress(import->DllNameRVA), ImportedNames(import->ImportNameTableRVA), true});
    }
}

}  // namespace tool
