#pragma once

#include <cstdint>
#include <string>

#include "VsMsgbus/UpdateNotify.h"
#include "values/ModuleInterface.h"

namespace bridge {

// A module's registered update callback. Its operations are for one thread at a time and let out what the module
// throws.
class CTheUpdateNotify {
public:
    CTheUpdateNotify(VsKitMsgbus::INYUpdateNotifyCallback* moduleCallback, void* moduleContext) noexcept
        : callback(moduleCallback), context(moduleContext) {}
    virtual ~CTheUpdateNotify() = default;
    CTheUpdateNotify(const CTheUpdateNotify&) = delete;
    CTheUpdateNotify& operator=(const CTheUpdateNotify&) = delete;

    int32_t RunUpdateNotify(VsKit::cp_wchar second, VsKit::cp_wchar fourth, VsKit::cp_wchar third,
                            uint32_t number) const;

    // `value` holds afterwards what the module set, empty when it set nothing. Raises std::bad_alloc when a value found
    // no memory.
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE RunGetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                             std::wstring& value) const;

    int32_t RunSetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key, VsKit::cp_wchar value) const;

    // The registration as the module made it. Nothing reads the last three.
    const ModuleInterface<VsKitMsgbus::INYUpdateNotifyCallback> callback;
    void* const reserved = nullptr;
    void* const context;
    void* const further = nullptr;
};

}  // namespace bridge
