// The same module on the plain interfaces: for compilers without C++20 or without a standard library of their own.
#include <VsMsgbus.h>

#include "MyModule.h"

namespace {

// As in MyModule.h, as wide text.
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

// Gets the log lines of the bridge and the agent, most of them about failures.
class Sink final : public VsKitMsgbus::ILogSink {
public:
    // Your product's log is the place for these lines.
    void Write(int /*level*/, const wchar_t* /*text*/) override {}
};

Collector collector;
Sink sink;
VsMsgbus* bridge = nullptr;

}  // namespace

// The host calls these two; never call the bridge from DllMain.
bool MyModuleLoad() {
    return VsKitMsgbusSetCollectProperties(wideProductId, &collector, nullptr) &&
           VsMsgbusEntry(myProductId, VsMsgbusServiceProperty, &sink, &bridge);
}

bool MyModuleUnload() {
    // After Remove no thread of the agent's is inside the collector, so that the module may go.
    return VsMsgbusExit(myProductId, bridge) && VsKitMsgbusRemoveCollectProperties(wideProductId);
}
