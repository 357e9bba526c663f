#include "tool/play/player/MemoryFault.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>
#include <string_view>

#include "vsmsgbus_testing/Failure.hpp"

namespace tool::play {

namespace {

constexpr int64_t never = INT64_MAX;

std::atomic<int64_t> allocationsLeft{never};
std::atomic<bool> isFailingOn{false};
std::atomic<uint32_t> faults{0};

decltype(&std::malloc) realMalloc = nullptr;
decltype(&std::calloc) realCalloc = nullptr;
decltype(&std::realloc) realRealloc = nullptr;

bool HasMemory() {
    if (allocationsLeft.load() == never) {
        return true;
    }
    const int64_t left = --allocationsLeft;
    const bool isThere = left > 0 || (left < 0 && !isFailingOn);
    faults += isThere ? 0 : 1;
    return isThere;
}

void* Malloc(size_t size) {
    return HasMemory() ? realMalloc(size) : nullptr;
}

void* Calloc(size_t count, size_t size) {
    return HasMemory() ? realCalloc(count, size) : nullptr;
}

void* Realloc(void* memory, size_t size) {
    return HasMemory() ? realRealloc(memory, size) : nullptr;
}

template <class Function>
bool Replace(std::string_view name, const char* wanted, void** slot, Function& real, Function replacement) {
    if (name != wanted) {
        return false;
    }
    real = reinterpret_cast<Function>(*slot);
    DWORD protection = 0;
    ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = reinterpret_cast<void*>(replacement);
    ::VirtualProtect(slot, sizeof *slot, protection, &protection);
    return true;
}

template <class Type>
Type* At(void* image, size_t offset) {
    return reinterpret_cast<Type*>(static_cast<unsigned char*>(image) + offset);
}

}  // namespace

void WatchMemoryOf(void* library) {
    if (realMalloc != nullptr) {
        return;
    }
    const auto* const dos = At<IMAGE_DOS_HEADER>(library, 0);
    const auto* const headers = At<IMAGE_NT_HEADERS64>(library, static_cast<size_t>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (const auto* from = At<IMAGE_IMPORT_DESCRIPTOR>(library, place.VirtualAddress); from->Name != 0; ++from) {
        const auto* thunk = At<IMAGE_THUNK_DATA64>(library, from->OriginalFirstThunk);
        auto* slot = At<void*>(library, from->FirstThunk);
        for (; thunk->u1.AddressOfData != 0; ++thunk, ++slot) {
            if (!IMAGE_SNAP_BY_ORDINAL64(thunk->u1.Ordinal)) {
                const std::string_view name = At<char>(library, thunk->u1.AddressOfData + sizeof(WORD));
                Replace(name, "malloc", slot, realMalloc, &Malloc) ||
                    Replace(name, "calloc", slot, realCalloc, &Calloc) ||
                    Replace(name, "realloc", slot, realRealloc, &Realloc);
            }
        }
    }
    if (realMalloc == nullptr) {
        throw vsmsgbus::testing::Failure("the bridge takes its memory from elsewhere than malloc");
    }
}

void FailMemory(uint32_t nth, bool isAlways) {
    isFailingOn = isAlways;
    allocationsLeft = nth;
}

void EndMemoryFault() {
    allocationsLeft = never;
}

uint32_t CountMemoryFaults() {
    return faults;
}

}  // namespace tool::play
