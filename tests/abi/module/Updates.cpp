#include "VsMsgbus.h"
#include "abi/module/Module.h"
#include "abi/module/Told.h"

namespace {

class Callback final : public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    int32_t UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third,
                         uint32_t* number) override {
        Told() << L"UpdateNotify " << second << L", " << fourth << L", " << third << L", "
               << static_cast<int32_t>(*number);
        return 20;
    }
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                          ISet* set) override {
        Told() << L"GetProductInfo " << second << L", " << key;
        Told() << L"Set answers " << set->Set(L"given");
        return static_cast<VsKitMsgbus::etag_PRODUCT_RETURN_VALUE>(30);
    }
    int32_t SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) override {
        Told() << L"SetProductInfo " << second << L", " << key << L", " << value;
        return 40;
    }
};

constinit Callback callback;

}  // namespace

bool ModuleOfferUpdates(const wchar_t* productId) {
    return VsKitMsgbusSetUpdateNotify(productId, &callback, nullptr);
}

bool ModuleWithdrawUpdates(const wchar_t* productId) {
    return VsKitMsgbusRemoveUpdateNotify(productId);
}
