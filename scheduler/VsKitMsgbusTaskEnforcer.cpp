// The exports of scheduled tasks.
#include "VsMsgbus/TaskEnforcer.h"

#include <memory>
#include <string>

#include "base/Boundary.h"
#include "msgbus/instance/VsMsgbus.h"
#include "scheduler/TaskEnforcerTable.h"
#include "scheduler/VsMsgbusTaskExecutor.h"

namespace {

// The agent's contract for module-reported ids: the low byte of each unit, not a conversion.
std::string LowBytes(const wchar_t* text) {
    std::string bytes;
    for (; *text != L'\0'; ++text) {
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(*text & 0xFF)));
    }
    return bytes;
}

int32_t ReportedStatus(int status) {
    using VsKitMsgbus::INYTaskEnforcer;
    switch (status) {
        case INYTaskEnforcer::NothingDecided:
        case INYTaskEnforcer::Succeeded:
        case INYTaskEnforcer::AgentDefined: return status;
        default: return INYTaskEnforcer::Failed;
    }
}

}  // namespace

bool VsKitMsgbusSetTaskEnforcer(const wchar_t* productId, VsKitMsgbus::INYTaskEnforcer* enforcer,
                                void* context) noexcept {
    if (productId == nullptr || enforcer == nullptr) {
        return false;
    }
    return Guarded(false, [&] {
        TaskEnforcerTable().Set(productId, context, enforcer);
        return true;
    });
}

bool VsKitMsgbusRemoveTaskEnforcer(const wchar_t* productId) noexcept {
    return Guarded(true, [&] {
        if (productId != nullptr) {
            TaskEnforcerTable().Remove(productId);
        }
        return true;
    });
}

void VsKitMsgbusFreeTaskCookie(const wchar_t* productId, void* cookie) noexcept {
    Guarded([&] {
        if (productId != nullptr) {
            TaskEnforcerTable().With(productId, [cookie](const TaskEnforcerRecord& record, auto&& /*wasRemoved*/) {
                record.enforcer.Call(&VsKitMsgbus::INYTaskEnforcer::FreeCookie, cookie);
            });
        }
    });
}

void UpdateMsgbusTaskStatus(const wchar_t* taskId, int status) noexcept {
    Guarded([&] {
        if (taskId == nullptr) {
            return;
        }
        const auto executor = std::dynamic_pointer_cast<VsMsgbusTaskExecutor>(ShareService(IoKindTask));
        if (executor != nullptr) {
            executor->UpdateStatus(LowBytes(taskId), ReportedStatus(status));
        }
    });
}
