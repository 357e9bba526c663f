#include "msgbus/instance/VsMsgbusIoContainer.h"

#include <utility>

#include "agent/ny_agent.h"
#include "values/AgentException.h"

namespace bridge {

void VsMsgbusIoContainer::AddIo(int32_t kind, VsMsgbusIoPointer io) {
    if (FindIo(kind) != nullptr) {
        throw AgentException(NY_ALREADY_EXISTS);
    }
    const ScopedLock guard(mutex);
    ios[kind] = std::move(io);
}

VsMsgbusIo* VsMsgbusIoContainer::FindIo(int32_t kind) {
    return ShareIo(kind).get();
}

VsMsgbusIoPointer VsMsgbusIoContainer::ShareIo(int32_t kind) {
    const ScopedLock guard(mutex);
    const auto found = ios.find(kind);
    return found != ios.end() ? found->second : nullptr;
}

VsMsgbusIoMap VsMsgbusIoContainer::CopyIos() {
    const ScopedLock guard(mutex);
    return ios;
}

VsMsgbusIoMap VsMsgbusIoContainer::TakeIos() {
    const ScopedLock guard(mutex);
    return std::exchange(ios, {});
}

}  // namespace bridge
