#include "checking/ModuleMemory.h"

#include <windows.h>

#include <array>
#include <vector>

#include "base/Boundary.h"
#include "checking/SafeRead.h"

namespace checking {

namespace {

constexpr DWORD readable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                           PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD executable = PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD writable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;

bool Has(const void* address, DWORD protections) noexcept {
    MEMORY_BASIC_INFORMATION memory{};
    return ::VirtualQuery(address, &memory, sizeof memory) != 0 && memory.State == MEM_COMMIT &&
           (memory.Protect & protections) != 0 && (memory.Protect & PAGE_GUARD) == 0;
}

const void* const* TableOf(const void* object) noexcept {
    return *static_cast<const void* const* const*>(object);
}

// In the block of that heap which the address lies in; 0 when none does.
size_t RoomInHeap(HANDLE heap, const std::byte* address) noexcept {
    if (::HeapLock(heap) == FALSE) {
        return 0;
    }
    size_t room = 0;
    PROCESS_HEAP_ENTRY block{};
    while (room == 0 && ::HeapWalk(heap, &block) != FALSE) {
        const auto* const begin = static_cast<const std::byte*>(block.lpData);
        if ((block.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 && address >= begin && address < begin + block.cbData) {
            const std::byte* const end = begin + ::HeapSize(heap, HEAP_NO_SERIALIZE, begin);
            room = address < end ? static_cast<size_t>(end - address) : 0;
        }
    }
    ::HeapUnlock(heap);
    return room;
}

size_t RoomInPages(const void* address, size_t enough) noexcept {
    size_t room = 0;
    const auto* next = static_cast<const std::byte*>(address);
    MEMORY_BASIC_INFORMATION memory{};
    while (room <= enough && ::VirtualQuery(next, &memory, sizeof memory) != 0 && memory.State == MEM_COMMIT &&
           (memory.Protect & writable) != 0) {
        const auto* const end = static_cast<const std::byte*>(memory.BaseAddress) + memory.RegionSize;
        room += static_cast<size_t>(end - next);
        next = end;
    }
    return room;
}

}  // namespace

size_t SlotThatIsNoFunction(const void* object, size_t slots) noexcept {
    const void* const* const table = TableOf(object);
    for (size_t slot = 0; slot < slots; ++slot) {
        if (!Has(&table[slot], readable) || !Has(table[slot], executable)) {
            return slot + 1;
        }
    }
    return 0;
}

bool IsObjectThere(const void* object) noexcept {
    return Has(object, readable) && Has(TableOf(object), readable) && Has(TableOf(object)[0], executable);
}

const void* FirstFunction(const void* object) noexcept {
    const void* const table = ReadPointer(object);
    const void* const function = table != nullptr ? ReadPointer(table) : nullptr;
    return function != nullptr && ReadPointer(function) != nullptr ? function : nullptr;
}

std::string LibraryOf(const void* object) {
    HMODULE library = nullptr;
    std::array<char, MAX_PATH> path{};
    if (!IsObjectThere(object) ||
        ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                             static_cast<const char*>(TableOf(object)[0]), &library) == FALSE ||
        ::GetModuleFileNameA(library, path.data(), static_cast<DWORD>(path.size() - 1)) == 0) {
        return "unknown code";
    }
    const std::string whole(path.data());
    return whole.substr(whole.find_last_of("\\/") + 1);
}

bool IsOnOwnStack(const void* object) noexcept {
    // A stack is one reservation of memory.
    const int onStack = 0;
    MEMORY_BASIC_INFORMATION own{};
    MEMORY_BASIC_INFORMATION others{};
    return ::VirtualQuery(&onStack, &own, sizeof own) != 0 && ::VirtualQuery(object, &others, sizeof others) != 0 &&
           own.AllocationBase == others.AllocationBase;
}

size_t RoomAt(const void* address, size_t enough) noexcept {
    if (address == nullptr) {
        return 0;
    }
    size_t room = 0;
    if (!IsOnOwnStack(address)) {
        bridge::Guarded([&] {
            std::vector<HANDLE> heaps(::GetProcessHeaps(0, nullptr));
            heaps.resize(::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
            for (size_t i = 0; i < heaps.size() && room == 0; ++i) {
                room = RoomInHeap(heaps[i], static_cast<const std::byte*>(address));
            }
        });
    }
    return room != 0 ? room : RoomInPages(address, enough);
}

}  // namespace checking
