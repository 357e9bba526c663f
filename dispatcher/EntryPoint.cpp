#include "dispatcher/EntryPoint.h"

#include "dispatcher/Dispatcher.h"

namespace bridge {

void LoadGroup(Group& group) noexcept {
    DispatcherLoad(
        {group.name, agentSoftwareId, group.library, &group.version, group.names, &group.table, group.count});
}

void** LoadedTable(Group& group) noexcept {
    LoadGroup(group);
    return group.table.load(std::memory_order_acquire);
}

void UnloadLibrary(const Group& group) noexcept {
    DispatcherUnload(agentSoftwareId, group.library);
}

}  // namespace bridge
