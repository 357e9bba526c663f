#include "VsMsgbus.h"
#include "abi/module/Module.h"
#include "abi/module/Told.h"

namespace {

const char* exitsWhenAsked = nullptr;

class Collector final : public VsKitMsgbus::INYCollectProperties {
public:
    void CollectProperties(bool full, ISet* set) override {
        Told() << L"CollectProperties " << (full ? L"true" : L"false");
        Told() << L"SetProperty answers " << set->SetProperty(L"General", L"Version", L"1.0");
        Told() << L"SetProperty answers " << set->SetProperty(L"General", L"Nothing", nullptr);
        if (exitsWhenAsked != nullptr) {
            Told() << L"VsMsgbusExit answers " << ModuleExit(exitsWhenAsked);
            exitsWhenAsked = nullptr;
        }
    }
    int32_t GetLogLevel() override {
        Told() << L"GetLogLevel";
        return 5;
    }
};

constinit Collector collector;

}  // namespace

bool ModuleOfferProperties(const wchar_t* productId) {
    return VsKitMsgbusSetCollectProperties(productId, &collector, nullptr);
}

bool ModuleWithdrawProperties(const wchar_t* productId) {
    return VsKitMsgbusRemoveCollectProperties(productId);
}

void ModuleExitWhenAsked(const char* productId) {
    exitsWhenAsked = productId;
}
