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
    VsMsgbus(const VsMsgbus&) = delete;
    VsMsgbus& operator=(const VsMsgbus&) = delete;

    bool HasClient() const noexcept { return clientRecord != nullptr && clientRecord->client != nullptr; }
    VsMsgbusClientRecord* ClientRecord() const noexcept { return clientRecord.get(); }
    bool IsStarted() const noexcept { return started.load() != 0; }

    // Enters a product; one that is entered keeps its mask. False once the instance has ended.
    bool AddProduct(const std::string& productId, uint32_t serviceMask);
    void RemoveProduct(const std::string& productId);
    bool HasProduct(std::string_view productId);
    // Takes no product any more, if there is none now. Whether that is so, the first time.
    bool EndWithoutProducts();

    // Attaches the product to every service of the mask that exists, as long as it is entered: what leaves meanwhile,
    // from inside a callback or on another thread, is not left behind. Raises the agent exception when the agent
    // refuses.
    void AttachEntered(const std::string& productId, uint32_t serviceMask);
    // The same for any product.
    void AttachProduct(const std::string& productId, uint32_t serviceMask);
    // Ends the product's registration with every service; a refusal does not keep the others.
    void StopIosForProduct(const std::string& productId);
    // Returns when no Start on another thread is attaching a product and no Stop is letting go of one: of a product
    // that has left meanwhile, too. Waits at most 15 seconds, and not at all inside a callback of the agent's, for
    // which a Stop may be waiting.
    void WaitForStartOrStop() noexcept;

    void RegisterForNotifications() noexcept;
    void UnregisterForNotifications() noexcept;
    // Ends the watcher, the services and the client: now, or after the change of a client that is under way. The
    // instance is destroyed when nobody is inside any more.
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
    bridge::CallGate startsAndStops;  // as far as they are at the products
    std::atomic<uint8_t> started = 0;
};

namespace bridge {

// The process-wide instance, null until the first successful Entry and again after the last Exit. The first is for a
// look whether there is one, or which; the second for using it.
const VsMsgbus* CurrentBridge() noexcept;
std::shared_ptr<VsMsgbus> ShareBridge() noexcept;
// Makes `created` the process-wide instance unless there is one; returns the one there is.
std::shared_ptr<VsMsgbus> PublishBridge(const std::shared_ptr<VsMsgbus>& created) noexcept;
// Takes it back, if it is this one.
void WithdrawBridge(const VsMsgbus* instance) noexcept;

// The process-wide instance's service object of that kind, or null. It may have ended its registrations.
VsMsgbusIoPointer ShareService(int32_t kind);

}  // namespace bridge
