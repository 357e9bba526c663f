// A module that answers the agent when it asks for the product's properties.
#include <VsMsgbus.h>

namespace {

constexpr char productId[] = "MYPRODUCT1000";
constexpr wchar_t wideProductId[] = L"MYPRODUCT1000";

// Called on a thread of the agent's.
class Collector final : public VsKitMsgbus::INYCollectProperties {
public:
    void CollectProperties(bool /*full*/, ISet* set) override {
        set->SetProperty(L"General", L"Version", L"1.0");
        set->SetProperty(L"General", L"State", L"running");
    }
    int32_t GetLogLevel() override { return 0; }
};

Collector collector;
VsMsgbus* bridge = nullptr;

}  // namespace

// The host calls these two; never call the bridge from DllMain.
extern "C" __declspec(dllexport) bool LoadModule() {
    return VsKitMsgbusSetCollectProperties(wideProductId, &collector, nullptr) &&
           VsMsgbusEntry(productId, VsMsgbusServiceProperty, nullptr, &bridge);
}

extern "C" __declspec(dllexport) bool UnloadModule() {
    // After Remove no thread of the agent's is inside the collector, so that the module may go.
    return VsMsgbusExit(productId, bridge) && VsKitMsgbusRemoveCollectProperties(wideProductId);
}
