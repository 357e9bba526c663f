#pragma once

#include <windows.h>

#include <string>
#include <vector>

// The exports and imports of a loaded library, read from its image in memory.
class PeImage {
public:
    explicit PeImage(HMODULE module);

    // Sorted.
    std::vector<std::string> ExportedNames() const;
    // Functions that can be had by number, whether or not they have a name.
    size_t ExportedFunctions() const;
    // In the order of the import table, in upper case.
    std::vector<std::string> ImportedLibraries() const;

private:
    template <class Type>
    const Type* At(DWORD offset) const {
        return reinterpret_cast<const Type*>(base + offset);
    }
    const IMAGE_DATA_DIRECTORY& Directory(size_t index) const;

    const unsigned char* base;
};
