#pragma once

#include <cstdint>
#include <string>

#include "VsMsgbus/UpdateNotify.h"
#include "msgbus/registrations/RegistrationTable.h"
#include "values/ModuleInterface.h"

namespace bridge {

// A module's registered update callback, for one thread at a time.
class CTheUpdateNotify {
public:
    CTheUpdateNotify(VsKitMsgbus::INYUpdateNotifyCallback* moduleCallback, void* moduleContext) noexcept
        : callback(moduleCallback), context(moduleContext) {}
    virtual ~CTheUpdateNotify() = default;
    CTheUpdateNotify(const CTheUpdateNotify&) = delete;
    CTheUpdateNotify& operator=(const CTheUpdateNotify&) = delete;

    // `value` holds afterwards what the module set, empty when it set nothing. Raises std::bad_alloc when a value found
    // no memory, and lets out what the module throws.
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE RunGetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                             std::wstring& value) const;

    // The registration as the module made it. Nothing reads the last three.
    const ModuleInterface<VsKitMsgbus::INYUpdateNotifyCallback> callback;
    void* const reserved = nullptr;
    void* const context;
    void* const further = nullptr;
};

// Two calls into one module's callback never overlap. The record of a second registration for an id is not freed, kept
// on purpose.
inline auto& UpdateNotifyTable() {
    return TableOfProcess<
        RegistrationTable<CTheUpdateNotify, CallGate::Admission::OneThreadAtATime, DuplicateRecord::Leaked>>();
}

}  // namespace bridge
