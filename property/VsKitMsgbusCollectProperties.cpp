// The exports of property collection.
#include "VsMsgbus/CollectProperties.h"

#include "property/CTheCollectProperties.h"

using namespace bridge;

bool VsKitMsgbusSetCollectProperties(const wchar_t* productId, VsKitMsgbus::INYCollectProperties* collector,
                                     void* sink) noexcept {
    return CollectorTable().Set(productId, collector, static_cast<VsKitMsgbus::ILogSink*>(sink));
}

bool VsKitMsgbusRemoveCollectProperties(const wchar_t* productId) noexcept {
    return CollectorTable().Remove(productId);
}
