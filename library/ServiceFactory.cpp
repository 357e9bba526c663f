#include "msgbus/ServiceFactory.h"

#include "policy/VsMsgbusPolicyEnforcer.h"
#include "property/VsMsgbusPropertyProvider.h"
#include "updater/VsMsgbusUpdateInfoProvider.h"

VsMsgbusIoPointer MakeService(int32_t kind, ny_client_t* client) {
    switch (kind) {
        case IoKindPolicy: return std::make_shared<VsMsgbusPolicyEnforcer>(client);
        case IoKindProperty: return std::make_shared<VsMsgbusPropertyProvider>(client);
        case IoKindUpdate: return std::make_shared<VsMsgbusUpdateInfoProvider>(client);
        default: return nullptr;
    }
}

bool IsServiceOfKind(int32_t kind, const VsMsgbusIo& io) noexcept {
    switch (kind) {
        case IoKindPolicy: return dynamic_cast<const VsMsgbusPolicyEnforcer*>(&io) != nullptr;
        case IoKindProperty: return dynamic_cast<const VsMsgbusPropertyProvider*>(&io) != nullptr;
        case IoKindUpdate: return dynamic_cast<const VsMsgbusUpdateInfoProvider*>(&io) != nullptr;
        default: return false;
    }
}
