#include "policy/CPolicyDump.h"

namespace {

const wchar_t* OrNull(const wchar_t* value) noexcept {
    return value != nullptr ? value : L"<null>";
}

}  // namespace

// "pCatagoryId" is what readers of these dumps look for, and stays.
bool CPolicyDump::OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                              const wchar_t* name) noexcept {
    text << L"    Container FeatureId[" << OrNull(featureId) << L"] pCatagoryId[" << OrNull(categoryId) << L"] pTypeId["
         << OrNull(typeId) << L"] pName[" << OrNull(name) << L"]\n";
    return true;
}

bool CPolicyDump::OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) noexcept {
    text << L"      Settings Name=[" << OrNull(name) << L"] pIntParam[" << OrNull(intParam) << L"] pStrParam["
         << OrNull(strParam) << L"]\n";
    return true;
}

bool CPolicyDump::OnSection(const wchar_t* name, const wchar_t* /*reserved*/) noexcept {
    text << L"         Section Name=[" << OrNull(name) << L"]\n";
    return true;
}

bool CPolicyDump::OnSetting(const wchar_t* /*section*/, const wchar_t* name, const wchar_t* value) noexcept {
    text << L"             " << OrNull(name) << L"=[" << OrNull(value) << L"]\n";
    return true;
}
