// The exports of entry and exit.
#include "VsMsgbus/Entry.h"

#include <memory>
#include <mutex>
#include <string>

#include "base/Boundary.h"
#include "base/Mutex.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/HealthCheckRecord.h"
#include "msgbus/VsMsgbus.h"
#include "values/DroppedText.h"

using VsKit::CUniStream;

namespace {

// The bridge instance, created when there is none. Null when it could not be had with a working agent client.
//
// One thread creates it at a time, although Entries should not meet: the log lines of a second one, made and thrown
// away beside the first, would lead nowhere.
VsMsgbus* ObtainBridge(const char* productId) {
    static Mutex creation;
    const std::lock_guard guard(creation);
    if (VsMsgbus* const present = CurrentBridge()) {
        return present;
    }
    auto created = std::make_unique<VsMsgbus>(productId);
    if (!created->HasClient()) {
        return nullptr;
    }
    VsMsgbus* const bridge = PublishBridge(created.get());
    if (bridge == created.get()) {
        static_cast<void>(created.release());
    }
    return bridge;
}

void Enter(VsMsgbus& bridge, const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink) {
    if (!bridge.IsStarted()) {
        bridge.RegisterForNotifications();
        RecordForHealthCheck(productId, logSink, bridge.ClientRecord());
    }
    bridge.AttachProduct(productId, serviceMask);
}

// Ends the watcher, and with it the services, and frees the instance.
void DestroyBridge(VsMsgbus* bridge) noexcept {
    bridge->UnregisterForNotifications();
    // A watcher that is still busy with the instance does the rest itself when it is done.
    const auto destroyLate = [](void* late) { DestroyBridge(static_cast<VsMsgbus*>(late)); };
    if (NyClientHandOver(bridge->ClientRecord()->client, destroyLate, bridge)) {
        WithdrawBridge(bridge);
    } else {
        delete bridge;
    }
}

// The "%s" stays in the text, kept on purpose.
template <class Body>
bool RunForProduct(const wchar_t* verb, const char* productId, Body&& body) noexcept {
    return RunOrDropText(body, [&](CUniStream& text, const char* /*what*/) {
        text << L"Failed to " << verb << L" msgbus for product id: %s [" << productId << L"]";
    });
}

void Leave(VsMsgbus& bridge, const char* productId) {
    // First out of the table: a Start under way on the watcher's thread then does not attach it behind our back.
    const std::string product(productId);
    bridge.RemoveProduct(product);
    RunForProduct(L"exit", productId, [&] { bridge.StopIosForProduct(product); });
    // What the watcher's thread has in hand at this moment may be this product.
    bridge.WaitForStartOrStop();
    if (!bridge.HasProducts()) {
        ForgetClientForHealthCheck();
        DestroyBridge(&bridge);
    }
}

bool EnterBridge(const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink, VsMsgbus** outInstance) {
    VsMsgbus* const bridge = ObtainBridge(productId);
    if (bridge == nullptr) {
        return false;
    }
    return RunForProduct(L"entry", productId, [&] {
        bridge->AddProduct(productId, serviceMask);
        *outInstance = bridge;
        Enter(*bridge, productId, serviceMask, logSink);
    });
}

// Leaves nothing behind of an Entry that failed before its product was entered.
void UndoEntry(const char* productId, bool isSinkOurs) {
    VsMsgbus* const bridge = CurrentBridge();
    if (bridge != nullptr && bridge->HasProduct(productId)) {
        return;
    }
    if (bridge != nullptr && !bridge->HasProducts()) {
        DestroyBridge(bridge);
    }
    if (isSinkOurs) {
        ClearLogSink();
    }
}

}  // namespace

bool VsMsgbusEntry(const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink,
                   VsMsgbus** outInstance) noexcept {
    if (productId == nullptr || outInstance == nullptr) {
        return false;
    }
    return Guarded(false, [&] {
        const bool isSinkOurs = OfferLogSink(logSink);
        const bool isEntered =
            Guarded(false, [&] { return EnterBridge(productId, serviceMask, logSink, outInstance); });
        if (!isEntered) {
            UndoEntry(productId, isSinkOurs);
        }
        return isEntered;
    });
}

bool VsMsgbusExit(const char* productId, VsMsgbus* instance) noexcept {
    // An instance that is not the process's own was destroyed by an earlier Exit.
    if (instance != nullptr && instance == CurrentBridge() && productId != nullptr) {
        RunForProduct(L"exit", productId, [&] { Leave(*instance, productId); });
    }
    ClearLogSink();
    return true;
}

VsMsgbusClientRecord* GetMsgbusClient() noexcept {
    // Not tested for, kept on purpose: to be called between Entry and Exit only.
    return CurrentBridge()->ClientRecord();
}
