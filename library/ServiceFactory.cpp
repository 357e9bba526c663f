#include "msgbus/instance/ServiceFactory.h"

#include "policy/VsMsgbusPolicyEnforcer.h"
#include "property/VsMsgbusPropertyProvider.h"
#include "scheduler/VsMsgbusTaskExecutor.h"
#include "updater/VsMsgbusUpdateInfoProvider.h"

namespace bridge {

VsMsgbusIoPointer MakeService(int32_t kind, ny_client_t* client) {
    switch (kind) {
        case IoKindPolicy: return std::make_shared<VsMsgbusPolicyEnforcer>(client);
        case IoKindProperty: return std::make_shared<VsMsgbusPropertyProvider>(client);
        case IoKindUpdate: return std::make_shared<VsMsgbusUpdateInfoProvider>(client);
        case IoKindTask: return std::make_shared<VsMsgbusTaskExecutor>(client);
        default: return nullptr;
    }
}

bool IsServiceOfKind(int32_t kind, const VsMsgbusIo& io) noexcept {
    switch (kind) {
        case IoKindPolicy: return dynamic_cast<const VsMsgbusPolicyEnforcer*>(&io) != nullptr;
        case IoKindProperty: return dynamic_cast<const VsMsgbusPropertyProvider*>(&io) != nullptr;
        case IoKindUpdate: return dynamic_cast<const VsMsgbusUpdateInfoProvider*>(&io) != nullptr;
        case IoKindTask: return dynamic_cast<const VsMsgbusTaskExecutor*>(&io) != nullptr;
        default: return false;
    }
}

}  // namespace bridge
