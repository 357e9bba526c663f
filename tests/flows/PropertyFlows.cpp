#include "flows/EnteredFlow.h"
#include "flows/FlowList.h"
#include "support/AgentRequest.h"

namespace {

// The module sets one property.
class PropertiesFlow final : public EnteredFlow<VsMsgbusServiceProperty>, private VsKitMsgbus::INYCollectProperties {
public:
    using EnteredFlow::EnteredFlow;
    void Run() override {
        world.Note("Set: " +
                   TextOf(VsKitMsgbusSetCollectProperties(FlowWorld::wideProduct, this, &world.ModuleSink())));
        for (const std::string& line : Ask(FlowWorld::product)) {
            world.Note("agent: " + line);
        }
        world.Note("Remove: " + TextOf(VsKitMsgbusRemoveCollectProperties(FlowWorld::wideProduct)));
    }

private:
    void CollectProperties(bool /*full*/, ISet* set) override {
        world.Note("module: SetProperty: " + TextOf(set->SetProperty(L"general", L"version", L"1.0")));
    }
    int32_t GetLogLevel() override { return 0; }
};

}  // namespace

std::vector<FlowKind> PropertyFlows() {
    return {{"Properties", MakeFlow<PropertiesFlow>}};
}
