#include "Handles.h"

#include <map>
#include <mutex>

#include "OpenKey.h"
#include "SystemLock.h"
#include "win32_faults.h"

namespace win32 {

namespace {

constexpr uintptr_t handleSpacing = 4;

struct HandleTable {
    SystemLock lock;
    std::map<HANDLE, std::shared_ptr<Object>> objects;
    uintptr_t lastHandle = 0x100;
};

// Never destroyed: threads may outlive the end of main.
HandleTable& TheTable() {
    static HandleTable& table = *new HandleTable;
    return table;
}

}  // namespace

HANDLE OpenHandle(std::shared_ptr<Object> object) {
    HandleTable& table = TheTable();
    const std::lock_guard guard(table.lock);
    const auto handle = reinterpret_cast<HANDLE>(table.lastHandle + handleSpacing);
    table.objects.emplace(handle, std::move(object));
    table.lastHandle += handleSpacing;
    return handle;
}

std::shared_ptr<Object> TakeHandle(HANDLE handle) {
    HandleTable& table = TheTable();
    const std::lock_guard guard(table.lock);
    auto taken = table.objects.extract(handle);
    return taken ? std::move(taken.mapped()) : nullptr;
}

std::shared_ptr<Object> FindObject(HANDLE handle) {
    HandleTable& table = TheTable();
    const std::lock_guard guard(table.lock);
    const auto found = table.objects.find(handle);
    return found != table.objects.end() ? found->second : nullptr;
}

size_t OpenHandles() {
    HandleTable& table = TheTable();
    const std::lock_guard guard(table.lock);
    return table.objects.size();
}

size_t HandleMark() {
    HandleTable& table = TheTable();
    const std::lock_guard guard(table.lock);
    return table.lastHandle;
}

void CloseHandlesSince(size_t mark) {
    for (size_t handle = mark + handleSpacing; handle <= HandleMark(); handle += handleSpacing) {
        TakeHandle(reinterpret_cast<HANDLE>(handle));
    }
}

size_t OpenRegistryKeys() {
    HandleTable& table = TheTable();
    const std::lock_guard guard(table.lock);
    size_t keys = 0;
    for (const auto& [handle, object] : table.objects) {
        keys += dynamic_cast<const OpenKey*>(object.get()) != nullptr ? size_t{1} : size_t{0};
    }
    return keys;
}

}  // namespace win32
