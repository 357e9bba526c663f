// The exports of update notification.
#include "VsMsgbus/UpdateNotify.h"

#include "updater/CTheUpdateNotify.h"

using namespace bridge;

bool VsKitMsgbusSetUpdateNotify(const wchar_t* productId, VsKitMsgbus::INYUpdateNotifyCallback* callback,
                                void* context) noexcept {
    return UpdateNotifyTable().Set(productId, callback, context);
}

bool VsKitMsgbusRemoveUpdateNotify(const wchar_t* productId) noexcept {
    return UpdateNotifyTable().Remove(productId);
}
