// Reads a library or program of Windows as a file: nothing of it is loaded, and it may be of any machine type or
// broken.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tool {

// The functions that an image imports from one library.
struct PeImport {
    std::string library;
    std::vector<std::string> functions;  // those imported by name
    bool isDelayed = false;              // looked for at the first call, not when the image is loaded
};

class PeFile {
public:
    explicit PeFile(const std::filesystem::path& path);

    // Whether the file can be read.
    bool IsThere() const { return isThere; }
    // Whether the file begins as a library or program does. Otherwise the functions below answer empty or 0.
    bool IsImage() const { return machine != 0; }
    // One of the system's IMAGE_FILE_MACHINE_ numbers, and its name for people.
    uint16_t Machine() const { return machine; }
    std::string MachineName() const;
    bool IsLibrary() const { return isLibrary; }
    // The size that the headers give, and the file's size, in bytes. A file that is smaller than its headers say was
    // cut off.
    uint64_t ExpectedSize() const { return expectedSize; }
    uint64_t Size() const { return content.size(); }

    // For images of 64 bits. Entries that lie outside the file are left out. The names are sorted.
    std::vector<std::string> Exports() const;
    std::vector<PeImport> Imports() const;

private:
    struct Section {
        uint32_t address;
        uint32_t virtualSize;
        uint32_t rawSize;
        uint32_t offset;
    };
    struct Directory {
        uint32_t address = 0;
        uint32_t size = 0;
    };

    void ReadHeaders();
    void ReadSections(size_t begin, size_t count);
    Directory DirectoryOf(size_t index) const;
    // The object at a place of the file or of the loaded image; none where the file has no such place.
    template <class Type>
    std::optional<Type> At(size_t offset) const;
    template <class Type>
    std::optional<Type> AtAddress(uint64_t address) const;
    std::string TextAtAddress(uint64_t address) const;
    std::optional<size_t> OffsetOf(uint64_t address) const;
    std::vector<std::string> ImportedNames(uint64_t names) const;
    void AddDelayedImports(std::vector<PeImport>& imports) const;

    std::string content;
    bool isThere = false;
    uint16_t machine = 0;
    bool isLibrary = false;
    uint64_t expectedSize = 0;
    std::vector<Section> sections;
    std::vector<Directory> directories;  // of images of 64 bits
};

}  // namespace tool
