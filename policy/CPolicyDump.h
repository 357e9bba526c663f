#pragma once

#include "VsMsgbus/EnforcePolicy.h"
#include "values/CUniStream.h"

// Writes what a walk tells as text, one indented line for each item. When memory runs out the text ends there, and Text
// is not good.
class CPolicyDump final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks {
public:
    // Each appends its line and returns true; null is written as "<null>".
    bool OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                     const wchar_t* name) noexcept override;
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) noexcept override;
    bool OnSection(const wchar_t* name, const wchar_t* reserved) noexcept override;
    bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) noexcept override;

    const VsKit::CUniStream& Text() const noexcept { return text; }

private:
    VsKit::CUniStream text;
};
