// The exports of entry and exit.
#include "VsMsgbus/Entry.h"

#include <windows.h>

#include <memory>
#include <string>

#include "base/Boundary.h"
#include "base/Mutex.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/instance/HealthCheckRecord.h"
#include "msgbus/instance/VsMsgbus.h"
#include "values/UnloggedText.h"

using namespace bridge;
using VsKit::CUniStream;

namespace {

// Keeps this library in memory until the process ends, even when a module frees it: our watcher's thread, and threads
// of the agent's that come late, must find its code, and the C++ runtime that is linked in gives nothing back of what
// it takes each time the library is loaded. Asking again changes nothing.
bool KeepThisLibrary() noexcept {
    HMODULE library = nullptr;
    return ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                                reinterpret_cast<const char*>(&KeepThisLibrary), &library) != FALSE;
}

// The bridge instance, created when there is none. Null when its agent client could not be created.
//
// Only one thread at a time creates it. A second instance, created beside the first and thrown away, would have taken
// the dispatcher's log lines with it.
std::shared_ptr<VsMsgbus> ObtainBridge(const char* productId) {
    static Mutex creation;
    const ScopedLock guard(creation);
    if (std::shared_ptr<VsMsgbus> present = ShareBridge()) {
        return present;
    }
    const std::shared_ptr<VsMsgbus> created = VsMsgbus::Make(productId);
    return created->HasClient() ? PublishBridge(created) : nullptr;
}

// Enters the product into the bridge instance that there is: into another one when that one ends meanwhile.
std::shared_ptr<VsMsgbus> EnterProduct(const char* productId, uint32_t serviceMask) {
    for (;;) {
        std::shared_ptr<VsMsgbus> bridge = ObtainBridge(productId);
        if (bridge == nullptr || bridge->AddProduct(productId, serviceMask)) {
            return bridge;
        }
        WithdrawBridge(bridge.get());
    }
}

void Enter(VsMsgbus& bridge, const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink) {
    if (!bridge.IsStarted()) {
        bridge.RegisterForNotifications();
        RecordForHealthCheck(productId, logSink, bridge.ClientRecord());
        if (CurrentBridge() != &bridge) {
            // The instance has ended meanwhile.
            ForgetClientForHealthCheck(bridge.ClientRecord());
        }
    }
    bridge.AttachEntered(productId, serviceMask);
}

// Ends the instance when the last product has left it.
void EndIfEmpty(VsMsgbus& bridge) {
    if (bridge.EndWithoutProducts()) {
        ForgetClientForHealthCheck(bridge.ClientRecord());
        WithdrawBridge(&bridge);
        bridge.End();
    }
}

// The "%s" stays in the text, kept on purpose.
template <class Body>
bool RunForProductId(const wchar_t* verb, const char* productId, Body&& body) noexcept {
    return RunOrComposeUnlogged(body, [&](CUniStream& text, const char* /*what*/) {
        text << L"Failed to " << verb << L" msgbus for product id: %s [" << productId << L"]";
    });
}

void Leave(VsMsgbus& bridge, const char* productId) {
    // The product leaves the table first: a Start under way on the watcher's thread then does not attach it again.
    const std::string product(productId);
    bridge.RemoveProduct(product);
    RunForProductId(L"exit", productId, [&] { bridge.StopIosForProduct(product); });
    // The watcher's thread may be attaching or releasing this product at this moment.
    bridge.WaitForStartOrStop();
    EndIfEmpty(bridge);
}

bool EnterBridge(const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink, VsMsgbus** outInstance) {
    const std::shared_ptr<VsMsgbus> bridge = EnterProduct(productId, serviceMask);
    if (bridge == nullptr) {
        return false;
    }
    return RunForProductId(L"entry", productId, [&] {
        *outInstance = bridge.get();
        Enter(*bridge, productId, serviceMask, logSink);
    });
}

// Leaves nothing behind of an Entry that failed before its product was entered.
void UndoEntry(const char* productId, bool isSinkOurs) {
    const std::shared_ptr<VsMsgbus> bridge = ShareBridge();
    if (bridge != nullptr && bridge->HasProduct(productId)) {
        return;
    }
    if (bridge != nullptr) {
        EndIfEmpty(*bridge);
    }
    if (isSinkOurs) {
        ClearLogSink();
    }
}

}  // namespace

bool VsMsgbusEntry(const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink,
                   VsMsgbus** outInstance) noexcept {
    if (productId == nullptr || outInstance == nullptr || !KeepThisLibrary()) {
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
    const std::shared_ptr<VsMsgbus> bridge = ShareBridge();
    // An instance that is not the process's own was ended by an earlier Exit.
    if (bridge != nullptr && bridge.get() == instance && productId != nullptr) {
        RunForProductId(L"exit", productId, [&] { Leave(*bridge, productId); });
    }
    ClearLogSink();
    return true;
}

VsMsgbusClientRecord* GetMsgbusClient() noexcept {
    // Not tested for, kept on purpose: to be called between Entry and Exit only.
    return CurrentBridge()->ClientRecord();
}
