#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "base/CallGate.h"
#include "base/Mutex.h"
#include "msgbus/client/AgentCallbacks.h"
#include "msgbus/client/VsMsgbusClientRecord.h"
#include "msgbus/instance/VsMsgbusIoContainer.h"

// The bridge instance: one per process, shared by all products in it. It owns the agent client, the service objects and
// the table of entered products, and starts and stops the services as the agent comes and goes.
//
// Entry and Exit reach it on modules' threads, Start and Stop run on the watcher's (or, within Entry and the last Exit,
// on the module's).
class VsMsgbus : public bridge::VsMsgbusIoContainer,
                 public corvane::ny::notification_handler,
                 public corvane::ny::client_logger,
                 public corvane::ny::passphrase_provider {
public:
    // Creates the agent client for the product id. A failure leaves an instance without a client, see HasClient.
    explicit VsMsgbus(const char* productId);
    // The same as an instance that the threads inside its client share. Ended by End. Raises std::bad_alloc.
    static std::shared_ptr<VsMsgbus> Make(const char* productId);
    ~VsMsgbus() override;

    bool HasClient() const noexcept { return clientRecord != nullptr && clientRecord->client != nullptr; }
    VsMsgbusClientRecord* ClientRecord() const noexcept { return clientRecord.get(); }
    bool IsStarted() const noexcept { return started.load() != 0; }

    // Enters a product; one that is entered keeps its mask. False once the instance has ended.
    bool AddProduct(const std::string& productId, uint32_t serviceMask);
    void RemoveProduct(const std::string& productId);
    bool HasProduct(std::string_view productId);
    // Ends the instance when no product is in: AddProduct then takes none any more. True for the call that ends it.
    bool EndWithoutProducts();

    // Attaches the product to every service of the mask that exists, as long as it is entered. When it leaves
    // meanwhile, from inside a callback or on another thread, its registrations are ended again. Raises the agent
    // exception when the agent refuses.
    void AttachEntered(const std::string& productId, uint32_t serviceMask);
    // The same without a look whether the product is entered.
    void AttachProduct(const std::string& productId, uint32_t serviceMask);
    // Ends the product's registration with every service; a refusal of the agent's does not keep the other
    // registrations.
    void StopIosForProduct(const std::string& productId);
    // Returns when no Start on another thread is attaching a product and no Stop is letting go of one: of a product
    // that has left meanwhile, too. Waits at most 15 seconds, and not at all inside a callback of the agent's, for
    // which a Stop may be waiting.
    void WaitForStartOrStop() noexcept;

    void RegisterForNotifications() noexcept;
    void UnregisterForNotifications() noexcept;
    // Ends the watcher, the services and the client: now, or after the change of a client that is under way. The
    // instance is destroyed when no thread is inside any more.
    void End() noexcept;

    // corvane::ny::notification_handler: type 1 starts, type 0 stops, others do nothing.
    void OnNotification(VsMsgbusClientRecord& record, int32_t type) override;
    // corvane::ny::client_logger: passes the agent's error lines on to the process's log sink.
    void Log(int32_t severity, const char* module, const char* message) override;
    // corvane::ny::passphrase_provider: supplies none.
    int32_t GetPassphrase(unsigned char* passphrase, size_t* size) override;

private:
    using ProductTable = std::map<std::string, uint32_t, std::less<>>;

    void CreateClient(const char* productId);
    void Start() noexcept;
    void Stop() noexcept;
    void CreateServices();
    void AttachEnteredProducts();
    // Unregisters the product, then all others, and lets go of every service object. A refusal is logged unless the
    // last product has left already: `productId` is null then.
    void ReleaseAllIos(const std::string* productId);
    static void UnregisterIo(bridge::VsMsgbusIo& io, const std::string* productId);

    ProductTable CopyProducts();

    std::shared_ptr<bridge::NyClient> client;
    std::unique_ptr<VsMsgbusClientRecord> clientRecord;
    bridge::Mutex productsLock;  // held for the insertion, removal or copy alone
    ProductTable products GUARDED_BY(productsLock);
    bool hasEnded GUARDED_BY(productsLock) = false;
    bridge::CallGate startsAndStops;  // the threads that attach products in a Start or let go of them in a Stop
    std::atomic<uint8_t> started = 0;
};

namespace bridge {

// The process-wide instance, null until the first successful Entry and again after the last Exit. CurrentBridge is for
// comparing addresses alone; ShareBridge is for using the instance.
const VsMsgbus* CurrentBridge() noexcept;
std::shared_ptr<VsMsgbus> ShareBridge() noexcept;
// Makes `created` the process-wide instance unless there is one; returns the one there is.
std::shared_ptr<VsMsgbus> PublishBridge(const std::shared_ptr<VsMsgbus>& created) noexcept;
// Takes the process-wide instance away when it is this one.
void WithdrawBridge(const VsMsgbus* instance) noexcept;

// The process-wide instance's service object of that kind, or null. It may have ended its registrations.
VsMsgbusIoPointer ShareService(int32_t kind);

}  // namespace bridge
