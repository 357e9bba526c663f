#include "flows/EnteredFlow.h"
#include "flows/FlowList.h"
#include "support/AgentUpdate.h"

namespace {

// The updater calls in one way.
template <std::string (*call)(const std::string& product)>
class UpdateFlow final : public EnteredFlow<VsMsgbusServiceUpdate>, private VsKitMsgbus::INYUpdateNotifyCallback {
public:
    using EnteredFlow::EnteredFlow;
    void Run() override {
        world.Note("Set: " + TextOf(VsKitMsgbusSetUpdateNotify(FlowWorld::wideProduct, this, nullptr)));
        world.Note("agent: " + Update(call(FlowWorld::product)));
        world.Note("Remove: " + TextOf(VsKitMsgbusRemoveUpdateNotify(FlowWorld::wideProduct)));
    }

private:
    int32_t UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third,
                         uint32_t* number) override {
        world.Note("module: UpdateNotify(" + Narrow(second) + ", " + Narrow(fourth) + ", " + Narrow(third) + ", " +
                   std::to_string(*number) + ")");
        return 20;
    }
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                          ISet* set) override {
        world.Note("module: GetProductInfo(" + Narrow(second) + ", " + Narrow(key) +
                   "), Set: " + TextOf(set->Set(L"the value")));
        return static_cast<VsKitMsgbus::etag_PRODUCT_RETURN_VALUE>(30);
    }
    int32_t SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) override {
        world.Note("module: SetProductInfo(" + Narrow(second) + ", " + Narrow(key) + ", " + Narrow(value) + ")");
        return 40;
    }
};

}  // namespace

std::vector<FlowKind> UpdateFlows() {
    return {{"UpdateNotify", MakeFlow<UpdateFlow<NotifyCall>>},
            {"SetProductInfo", MakeFlow<UpdateFlow<SetCall>>},
            {"GetProductInfo", MakeFlow<UpdateFlow<GetCall>>},
            {"UpdaterEvent", MakeFlow<UpdateFlow<EventCall>>}};
}
