// The exports of scheduled tasks.
#include "VsMsgbus/TaskEnforcer.h"

#include <memory>

#include "base/Boundary.h"
#include "msgbus/instance/VsMsgbus.h"
#include "scheduler/TaskEnforcerTable.h"
#include "scheduler/VsMsgbusTaskExecutor.h"
#include "values/AgentTexts.h"

using namespace bridge;

namespace {

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
    return TaskEnforcerTable().Set(productId, enforcer, context);
}

bool VsKitMsgbusRemoveTaskEnforcer(const wchar_t* productId) noexcept {
    return TaskEnforcerTable().Remove(productId);
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
