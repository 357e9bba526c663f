// A module of the least code, through the public headers.
#pragma once

#include <functional>
#include <stdexcept>
#include <utility>

#include "VsMsgbus.h"
#include "bench/bare/BareAgent.h"
#include "tests/policy/SettingCounter.h"

namespace bench {

// The product in the bridge, from construction to destruction.
class Entered {
public:
    explicit Entered(uint32_t services) {
        if (!VsMsgbusEntry(bareProductId, services, nullptr, &instance)) {
            throw std::runtime_error("the bridge cannot be entered");
        }
    }
    ~Entered() { VsMsgbusExit(bareProductId, instance); }
    Entered(const Entered&) = delete;
    Entered& operator=(const Entered&) = delete;

private:
    VsMsgbus* instance = nullptr;
};

using IPolicyBag = VsKitMsgbus::INYEnforcePolicy::IPolicyBag;
using ICallbacks = IPolicyBag::ICallbacks;
using ISet = VsKitMsgbus::INYCollectProperties::ISet;

// Registered while it lives; does what `collect` says.
class Collecting final : public VsKitMsgbus::INYCollectProperties {
public:
    explicit Collecting(std::function<void(ISet& set)> whatToDo = {}) : collect(std::move(whatToDo)) {
        VsKitMsgbusSetCollectProperties(bareWideProductId, this, nullptr);
    }
    ~Collecting() { VsKitMsgbusRemoveCollectProperties(bareWideProductId); }
    Collecting(const Collecting&) = delete;
    Collecting& operator=(const Collecting&) = delete;

    void CollectProperties(bool /*full*/, ISet* set) override {
        if (collect) {
            collect(*set);
        }
    }
    int32_t GetLogLevel() override { return 0; }

    std::function<void(ISet& set)> collect;
};

// Registered while it lives; does what `enforce` says.
class Enforcing final : public VsKitMsgbus::INYEnforcePolicy {
public:
    Enforcing() { VsKitMsgbusSetEnforcePolicy(bareWideProductId, this, nullptr); }
    ~Enforcing() { VsKitMsgbusRemoveEnforcerPolicy(bareWideProductId); }
    Enforcing(const Enforcing&) = delete;
    Enforcing& operator=(const Enforcing&) = delete;

    int32_t GetLogLevel() override { return 0; }
    void Reserved() override {}
    void EnforcePolicy(const wchar_t* /*productId*/, IPolicyBag* bag) override { enforce(*bag); }

    // Has the agent notify the product, on this thread, and does this with the bag.
    void Enforce(std::function<void(IPolicyBag& bag)> whatToDo) {
        enforce = std::move(whatToDo);
        const auto& registered = TheBareAgent()->policies;
        if (registered.callback == nullptr ||
            registered.callback(nullptr, bareProductId, nullptr, registered.userData) != NY_OK) {
            throw std::runtime_error("the policies were not enforced");
        }
    }

    std::function<void(IPolicyBag& bag)> enforce;
};

// The client handle that the bare agent gives everybody.
inline ny_client_t* const bareClient = reinterpret_cast<ny_client_t*>(uintptr_t{1});
inline ny_property_bag_t* const barePropertyBag = reinterpret_cast<ny_property_bag_t*>(uintptr_t{1});

}  // namespace bench
