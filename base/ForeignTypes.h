// How Microsoft's compiler describes each type that it throws: its public ABI. Addresses are relative to the image; 0
// is none.
#pragma once

#include <cstddef>
#include <cstdint>

namespace bridge {

struct ForeignTypeList {
    int32_t count;
    int32_t types[1];
};

struct ForeignThrowInfo {
    uint32_t attributes;
    int32_t destructor;
    int32_t forwardCompatible;
    int32_t types;  // a ForeignTypeList: the object's own type and its bases
};

struct ForeignTypeName {
    const void* table;
    void* spare;
    char name[1];
};

struct ForeignType {
    uint32_t properties;
    int32_t name;  // a ForeignTypeName
    int32_t offset;
    int32_t tableOffset;  // of the table that knows where a virtual base is; below 0 for every other
    int32_t offsetInTable;
    int32_t size;
    int32_t copy;
};

// The part of the image at a relative address; null for 0.
template <class Part>
const Part* PartOfImage(const std::byte* imageBase, int32_t address) noexcept {
    return address != 0 ? reinterpret_cast<const Part*>(imageBase + static_cast<uint32_t>(address)) : nullptr;
}

}  // namespace bridge
