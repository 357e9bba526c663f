#include "msgbus/instance/VsMsgbus.h"

#include <utility>

#include "base/Boundary.h"
#include "base/NoDestroyAtExit.h"
#include "base/SharedSlot.h"
#include "dispatcher/AgentCalls.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/instance/ServiceFactory.h"
#include "values/AgentException.h"
#include "values/CUniStream.h"
#include "values/UnloggedText.h"

using namespace bridge;
using VsKit::CUniStream;

namespace {

NoDestroyAtExit<SharedSlot<VsMsgbus>> bridgeOfProcess;

// In the order in which Start creates the service objects, and in which a product is attached to them.
constexpr int32_t creationOrder[] = {IoKindPolicy, IoKindProperty, IoKindTask, IoKindUpdate};
constexpr int32_t attachOrder[] = {IoKindProperty, IoKindPolicy, IoKindTask, IoKindUpdate};

// The log callback of the agent's client.
int32_t LogToRecord(uint32_t severity, const char* module, const char* message, void* userData) noexcept {
    return Guarded<int32_t>(NY_UNEXPECTED, [&]() -> int32_t {
        const auto* record = static_cast<VsMsgbusClientRecord*>(userData);
        if (record->logger != nullptr) {
            record->logger->Log(static_cast<int32_t>(severity), module, message);
        }
        return NY_OK;
    });
}

// The notification callback of the agent's client.
void NotifyHandler(NyClient* client, uint32_t state, void* userData) noexcept {
    Guarded([&] {
        VsMsgbusClientRecord record;
        record.client = client;
        static_cast<corvane::ny::notification_handler*>(userData)->OnNotification(record, static_cast<int32_t>(state));
    });
}

// Runs `body`. For what it throws, composes a text that begins with `head` and goes to no log.
template <class Body>
void RunOrComposeFailure(const wchar_t* head, Body&& body) noexcept {
    RunOrComposeUnlogged(
        body, [head](CUniStream& text, const char* what) { text << head << L", exception:[" << what << L"]"; });
}

// Each byte becomes one character of its own, sign and all: agent log lines are not converted.
std::wstring WidenBytes(const char* text) {
    std::wstring wide;
    for (; text != nullptr && *text != '\0'; ++text) {
        wide.push_back(static_cast<wchar_t>(static_cast<signed char>(*text)));
    }
    return wide;
}

}  // namespace

namespace bridge {

const VsMsgbus* CurrentBridge() noexcept {
    return bridgeOfProcess->Address();
}

std::shared_ptr<VsMsgbus> ShareBridge() noexcept {
    return bridgeOfProcess->Share();
}

std::shared_ptr<VsMsgbus> PublishBridge(const std::shared_ptr<VsMsgbus>& created) noexcept {
    return bridgeOfProcess->Offer(created) ? created : ShareBridge();
}

void WithdrawBridge(const VsMsgbus* instance) noexcept {
    bridgeOfProcess->TakeIf([instance](const VsMsgbus& bridge) { return &bridge == instance; });
}

VsMsgbusIoPointer ShareService(int32_t kind) {
    const std::shared_ptr<VsMsgbus> bridge = ShareBridge();
    return bridge != nullptr ? bridge->ShareIo(kind) : nullptr;
}

}  // namespace bridge

std::shared_ptr<VsMsgbus> VsMsgbus::Make(const char* productId) {
    auto made = std::make_shared<VsMsgbus>(productId);
    if (made->HasClient()) {
        NyClientOwnedBy(*made->client, made);
    }
    return made;
}

VsMsgbus::VsMsgbus(const char* productId) {
    RunOrComposeFailure(L"VsMsgbus client creation failed", [&] { CreateClient(productId); });
}

VsMsgbus::~VsMsgbus() {
    // The record goes first: with it the client is released, whose watcher uses all other members.
    clientRecord.reset();
}

void VsMsgbus::CreateClient(const char* productId) {
    auto record = std::make_unique<VsMsgbusClientRecord>();
    record->isOwned = 1;
    Check(NyClientCreate(productId, record.get()));
    client = record->client->shared_from_this();
    clientRecord = std::move(record);
    clientRecord->logger = this;
    // Log drops all other lines.
    Check(NyClientSetLogCallback(clientRecord->client, LogToRecord, clientRecord.get(), SeverityFailure));
}

bool VsMsgbus::AddProduct(const std::string& productId, uint32_t serviceMask) {
    const ScopedLock guard(productsLock);
    if (!hasEnded) {
        products.try_emplace(productId, serviceMask);
    }
    return !hasEnded;
}

bool VsMsgbus::EndWithoutProducts() {
    const ScopedLock guard(productsLock);
    return products.empty() && !std::exchange(hasEnded, true);
}

void VsMsgbus::RemoveProduct(const std::string& productId) {
    const ScopedLock guard(productsLock);
    products.erase(productId);
}

bool VsMsgbus::HasProduct(std::string_view productId) {
    const ScopedLock guard(productsLock);
    return products.contains(productId);
}

VsMsgbus::ProductTable VsMsgbus::CopyProducts() {
    const ScopedLock guard(productsLock);
    return products;
}

void VsMsgbus::AttachEntered(const std::string& productId, uint32_t serviceMask) {
    if (!HasProduct(productId)) {
        return;
    }
    try {
        AttachProduct(productId, serviceMask);
    } catch (const AgentException&) {
        // The agent may refuse a product that leaves at this moment: its Entry has not failed then.
        if (HasProduct(productId)) {
            throw;
        }
    }
    if (!HasProduct(productId)) {
        StopIosForProduct(productId);
    }
}

void VsMsgbus::AttachProduct(const std::string& productId, uint32_t serviceMask) {
    for (const int32_t kind : attachOrder) {
        const bool isWanted = (serviceMask & static_cast<uint32_t>(kind)) != 0;
        const VsMsgbusIoPointer io = isWanted ? ShareIo(kind) : nullptr;
        if (io != nullptr && IsServiceOfKind(kind, *io)) {
            io->RegisterProduct(productId);
        }
    }
}

void VsMsgbus::RegisterForNotifications() noexcept {
    RunOrComposeFailure(L"Failed to register for VsMsgbus client notification", [&] {
        corvane::ny::notification_handler& handler = *this;
        Check(NyClientRegisterNotifications(clientRecord->client, NotifyHandler, &handler));
    });
}

void VsMsgbus::UnregisterForNotifications() noexcept {
    RunOrComposeFailure(L"Failed to unregister for VsMsgbus client notification due to",
                        [&] { Check(NyClientUnregisterNotifications(clientRecord->client)); });
}

void VsMsgbus::End() noexcept {
    UnregisterForNotifications();
    NyClientRelease(client.get());
}

void VsMsgbus::OnNotification(VsMsgbusClientRecord& /*record*/, int32_t type) {
    ComposeUnlogged(
        [&](CUniStream& text) { text << L"VsMsgbus received client notification with type :[" << type << L"]"; });
    if (type == static_cast<int32_t>(NyClientStateStarted)) {
        Start();
    } else if (type == static_cast<int32_t>(NyClientStateStopped)) {
        Stop();
    }
}

void VsMsgbus::Log(int32_t severity, const char* module, const char* message) {
    if (severity != static_cast<int32_t>(SeverityFailure)) {
        return;
    }
    CUniStream text;
    text << L"NY log message, [" << WidenBytes(module) << L"] " << WidenBytes(message);
    WriteBridgeLog(text);
}

int32_t VsMsgbus::GetPassphrase(unsigned char* /*passphrase*/, size_t* /*size*/) {
    return 0;
}

void VsMsgbus::Start() noexcept {
    RunOrComposeFailure(L"Failed to start VsMsgbus", [&] {
        Check(NyClientStart(clientRecord->client));
        CreateServices();
        AttachEnteredProducts();
        started = 1;
    });
}

void VsMsgbus::CreateServices() {
    for (const int32_t kind : creationOrder) {
        if (VsMsgbusIoPointer io = MakeService(kind, clientRecord->client->clientHandler.load())) {
            AddIo(kind, std::move(io));
        }
    }
}

void VsMsgbus::AttachEnteredProducts() {
    const CallGate::Call start(startsAndStops);
    for (const auto& [productId, serviceMask] : CopyProducts()) {
        AttachEntered(productId, serviceMask);
    }
}

void VsMsgbus::WaitForStartOrStop() noexcept {
    if (!AgentCall::IsUnderWay()) {
        Guarded([this] { startsAndStops.WaitForOthers(); });
    }
}
