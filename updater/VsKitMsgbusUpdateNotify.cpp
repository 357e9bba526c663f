// The exports of update notification.
#include "VsMsgbus/UpdateNotify.h"
#include "base/Boundary.h"
#include "updater/UpdateNotifyTable.h"

bool VsKitMsgbusSetUpdateNotify(const wchar_t* productId, VsKitMsgbus::INYUpdateNotifyCallback* callback,
                                void* context) noexcept {
    if (productId == nullptr || callback == nullptr) {
        return false;
    }
    return Guarded(false, [&] {
        UpdateNotifyTable().Set(productId, callback, context);
        return true;
    });
}

bool VsKitMsgbusRemoveUpdateNotify(const wchar_t* productId) noexcept {
    return Guarded(true, [&] {
        if (productId != nullptr) {
            UpdateNotifyTable().Remove(productId);
        }
        return true;
    });
}
