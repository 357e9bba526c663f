// The exports of property collection.
#include "VsMsgbus/CollectProperties.h"

#include "base/Boundary.h"
#include "property/CollectorTable.h"

bool VsKitMsgbusSetCollectProperties(const wchar_t* productId, VsKitMsgbus::INYCollectProperties* collector,
                                     void* sink) noexcept {
    if (productId == nullptr || collector == nullptr) {
        return false;
    }
    return Guarded(false, [&] {
        CollectorTable().Set(productId, collector, static_cast<VsKitMsgbus::ILogSink*>(sink));
        return true;
    });
}

bool VsKitMsgbusRemoveCollectProperties(const wchar_t* productId) noexcept {
    return Guarded(true, [&] {
        if (productId != nullptr) {
            CollectorTable().Remove(productId);
        }
        return true;
    });
}
