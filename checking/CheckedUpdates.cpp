#include "checking/CheckedUpdates.h"

#include "checking/Callback.h"
#include "checking/LentTexts.h"

namespace checking {

bool CheckedUpdateSet::Set(const wchar_t* value) {
    ISet* const set = Use("Set");
    return set == nullptr || set->Set(value);
}

int32_t CheckedUpdates::UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third,
                                     uint32_t* number) {
    LentTexts texts(NarrowId(), "UpdateNotify");
    const wchar_t* const lent[] = {texts.Copy(second), texts.Copy(fourth), texts.Copy(third)};
    return CallRegistered(
        *this, "UpdateNotify", [&] { return callback->UpdateNotify(lent[0], lent[1], lent[2], number); },
        [&](TraceArguments& arguments) {
            arguments.Add("second", second).Add("fourth", fourth).Add("third", third);
            arguments.Add("number", int64_t{*number});
        });
}

VsKitMsgbus::etag_PRODUCT_RETURN_VALUE CheckedUpdates::GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                                      ISet* set) {
    const Loan<CheckedUpdateSet> loan(set, NarrowId(), "GetProductInfo");
    LentTexts texts(NarrowId(), "GetProductInfo");
    const wchar_t* const lent[] = {texts.Copy(second), texts.Copy(key)};
    return CallRegistered(
        *this, "GetProductInfo", [&] { return callback->GetProductInfo(lent[0], lent[1], loan.Get()); },
        [&](TraceArguments& arguments) { arguments.Add("second", second).Add("key", key); });
}

int32_t CheckedUpdates::SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) {
    LentTexts texts(NarrowId(), "SetProductInfo");
    const wchar_t* const lent[] = {texts.Copy(second), texts.Copy(key), texts.Copy(value)};
    return CallRegistered(*this, "SetProductInfo", [&] { return callback->SetProductInfo(lent[0], lent[1], lent[2]); });
}

}  // namespace checking
