#include "MicrosoftModule.h"
#include "Told.h"
#include "VsMsgbus.h"

namespace {

class Collector final : public VsKitMsgbus::INYCollectProperties {
public:
    void CollectProperties(bool full, ISet* set) override {
        Told() << L"CollectProperties " << (full ? L"true" : L"false");
        Told() << L"SetProperty answers " << set->SetProperty(L"General", L"Version", L"1.0");
        Told() << L"SetProperty answers " << set->SetProperty(L"General", L"Nothing", nullptr);
    }
    int32_t GetLogLevel() override {
        Told() << L"GetLogLevel";
        return 5;
    }
};

constinit Collector collector;

}  // namespace

bool MicrosoftModuleOfferProperties(const wchar_t* productId) {
    return VsKitMsgbusSetCollectProperties(productId, &collector, nullptr);
}

bool MicrosoftModuleWithdrawProperties(const wchar_t* productId) {
    return VsKitMsgbusRemoveCollectProperties(productId);
}
