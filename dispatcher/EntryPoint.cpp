#include "dispatcher/EntryPoint.h"

#include "dispatcher/Dispatcher.h"

void LoadGroup(Group& group) noexcept {
    DispatcherLoad(
        {group.name, agentSoftwareId, group.library, &group.version, group.names, &group.table, group.count});
}

void UnloadLibrary(const Group& group) noexcept {
    DispatcherUnload(agentSoftwareId, group.library);
}
