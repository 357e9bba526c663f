#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "base/Mutex.h"
#include "msgbus/registrations/VsMsgbusIo.h"

namespace bridge {

using VsMsgbusIoPointer = std::shared_ptr<VsMsgbusIo>;
using VsMsgbusIoMap = std::map<int32_t, VsMsgbusIoPointer>;

class VsMsgbusIoContainerInterface {
public:
    virtual ~VsMsgbusIoContainerInterface() = default;
    virtual void AddIo(int32_t kind, VsMsgbusIoPointer io) = 0;
    virtual VsMsgbusIo* FindIo(int32_t kind) = 0;
};

// The service objects by kind, in ascending order. Its lock is held for the look-up, insertion or copy alone, so that
// one thread may use the objects while another takes them away.
class VsMsgbusIoContainer : public VsMsgbusIoContainerInterface {
public:
    // Raises the agent exception with NY_ALREADY_EXISTS when the kind is present; a null entry counts as absent.
    void AddIo(int32_t kind, VsMsgbusIoPointer io) override;

    // The object, or null. Valid until the bridge stops; to use it beside a Stop on another thread, share it.
    VsMsgbusIo* FindIo(int32_t kind) override;

    // The object, or null, for as long as the caller holds it.
    VsMsgbusIoPointer ShareIo(int32_t kind);

    VsMsgbusIoMap CopyIos();
    // Leaves the container empty.
    VsMsgbusIoMap TakeIos();

private:
    Mutex mutex;
    VsMsgbusIoMap ios GUARDED_BY(mutex);
};

}  // namespace bridge
