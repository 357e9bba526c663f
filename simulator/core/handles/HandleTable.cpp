#include "simulator/core/handles/HandleTable.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>

#include "simulator/core/frame/Failure.h"

namespace simulator {

namespace {

// No 64-bit processor accepts these as addresses. The spacing aligns them as pointers are.
constexpr uintptr_t firstHandle = 0x4E59'0000'0000'0000;
constexpr uintptr_t handleSpacing = 16;

HandleTable& theHandles = *new HandleTable;

HandleMisuse Describe(const void* handle, HandleKind kind, const char* complaint) {
    std::array<char, 160> text{};
    std::snprintf(text.data(), text.size(), "the %s handle 0x%" PRIxPTR " %s", NameOf(kind),
                  reinterpret_cast<uintptr_t>(handle), complaint);
    return {text.data()};
}

}  // namespace

void* HandleTable::Refer(HandleKind kind, std::shared_ptr<void> object, size_t References::*count) {
    const std::lock_guard lock(mutex);
    const auto [known, isNew] = handles.try_emplace({kind, object.get()}, 0);
    if (isNew) {
        const uintptr_t handle = firstHandle + (lastNumber + 1) * handleSpacing;
        try {
            entries.emplace(handle, Entry{kind, std::move(object), {}});
        } catch (...) {
            handles.erase(known);
            throw;
        }
        known->second = handle;
        ++lastNumber;
    }
    ++(entries.at(known->second).references.*count);
    return reinterpret_cast<void*>(known->second);
}

std::shared_ptr<void> HandleTable::Find(HandleKind kind, const void* handle) const {
    const std::lock_guard lock(mutex);
    return Locate(kind, handle)->second.object;
}

void HandleTable::Drop(HandleKind kind, const void* handle, size_t References::*count) {
    // Declared before the lock, so that the object is destroyed without it: its destructor may release other handles.
    std::shared_ptr<void> object;
    const std::lock_guard lock(mutex);
    const auto entry = entries.find(Locate(kind, handle)->first);
    References& references = entry->second.references;
    if (references.*count == 0) {
        throw Describe(handle, kind, "is borrowed and was released");
    }
    --(references.*count);
    if (references.owned == 0 && references.lent == 0) {
        object = std::move(entry->second.object);
        handles.erase({kind, object.get()});
        entries.erase(entry);
    }
}

HandleTable::Entries::const_iterator HandleTable::Locate(HandleKind kind, const void* handle) const {
    Require(handle != nullptr);
    const auto entry = entries.find(reinterpret_cast<uintptr_t>(handle));
    if (entry == entries.end()) {
        throw Describe(handle, kind, "is not alive");
    }
    if (entry->second.kind != kind) {
        throw Describe(handle, kind, "is of another kind");
    }
    return entry;
}

HandleKind HandleTable::KindOf(const void* handle) const {
    const std::lock_guard lock(mutex);
    const auto entry = entries.find(reinterpret_cast<uintptr_t>(handle));
    return entry != entries.end() ? entry->second.kind : HandleKind::Any;
}

size_t HandleTable::CountOwned(HandleKind kind) const {
    const std::lock_guard lock(mutex);
    return static_cast<size_t>(std::count_if(entries.begin(), entries.end(), [kind](const auto& entry) {
        return entry.second.references.owned != 0 && (kind == HandleKind::Any || kind == entry.second.kind);
    }));
}

HandleTable& Handles() {
    return theHandles;
}

}  // namespace simulator
