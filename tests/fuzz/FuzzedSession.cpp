#include "fuzz/FuzzedSession.h"

#include <memory>

#include "VsMsgbus/Entry.h"
#include "dispatcher/Dispatcher.h"
#include "msgbus/BridgeLog.h"
#include "values/UnloggedText.h"

using namespace bridge;

namespace {

constexpr uint32_t everyService =
    VsMsgbusServiceUpdate | VsMsgbusServiceTask | VsMsgbusServicePolicy | VsMsgbusServiceProperty;

// One holder for the whole process: tables that are resolved stay, which is what the time goes into.
void HoldDispatcher() {
    static Dispatcher* held = nullptr;
    if (held == nullptr && DispatcherCreate(nullptr, &held) != NY_OK) {
        Found("no dispatcher");
    }
}

void ReadDropped(const std::wstring& text) {
    Touch(text.c_str());
}

void Notify(VsMsgbus& bridge, int32_t type) {
    VsMsgbusClientRecord record;
    record.client = bridge.ClientRecord()->client;
    bridge.OnNotification(record, type);
}

}  // namespace

void RunSession(const uint8_t* data, size_t size, const std::function<void(FuzzedSession& session)>& body) {
    FuzzInput input(data, size);
    FuzzedAgent agent(input);
    HoldDispatcher();
    SetUnloggedTextListener(&ReadDropped);
    ReadingSink sink;
    OfferLogSink(&sink);
    {
        const auto published = std::make_shared<VsMsgbus>("BRIDGE");
        VsMsgbus& bridge = *published;
        PublishBridge(published);
        bridge.AddProduct(fuzzedProduct, everyService);
        Notify(bridge, 1);
        FuzzedSession session{input, agent, bridge, sink};
        body(session);
        Notify(bridge, 0);
        WithdrawBridge(&bridge);
    }
    ClearLogSink();
}
