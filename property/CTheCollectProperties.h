#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "VsMsgbus/CollectProperties.h"
#include "VsMsgbus/LogSink.h"
#include "agent/ny_agent.h"
#include "base/Attributes.h"
#include "msgbus/registrations/RegistrationTable.h"
#include "values/ModuleInterface.h"
#include "values/TextFunctions.h"

namespace bridge {

// A module's registered collector, and the setter that the module is handed during a collection.
class CTheCollectProperties : public VsKitMsgbus::INYCollectProperties::ISet {
public:
    CTheCollectProperties(VsKitMsgbus::INYCollectProperties* moduleCollector,
                          VsKitMsgbus::ILogSink* moduleSink) noexcept
        : sink(moduleSink), collector(moduleCollector) {}

    bool SetProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) override;

    // Has the module set its properties into `bag`, through the libraries that the bag comes from. For one thread at a
    // time. `wasRemoved()` tells whether the module took the collector back meanwhile: the collector is then not asked
    // for its level.
    template <class WasRemoved>
    void Collect(ny_property_bag_t* agentBag, const LibrariesInUse* inUse, WasRemoved&& wasRemoved) {
        LookUpFunctions(inUse);
        const BagInUse bagInUse(*this, agentBag);
        collector.Call(&VsKitMsgbus::INYCollectProperties::CollectProperties, true, this);
        if (!wasRemoved()) {
            logLevel.store(collector.Call(&VsKitMsgbus::INYCollectProperties::GetLogLevel), std::memory_order_relaxed);
        }
    }

private:
    // Sets the bag for one collection, and takes it away however the collection ends.
    class BagInUse {
    public:
        BagInUse(CTheCollectProperties& owner, ny_property_bag_t* agentBag) noexcept
            : collectProperties(owner), outer(owner.bag.load(std::memory_order_relaxed)) {
            owner.bag.store(agentBag, std::memory_order_release);
        }
        ~BagInUse() { collectProperties.bag.store(outer, std::memory_order_release); }
        BagInUse(const BagInUse&) = delete;
        BagInUse& operator=(const BagInUse&) = delete;

    private:
        CTheCollectProperties& collectProperties;
        ny_property_bag_t* const outer;  // of the collection around this one, on the same thread; else null
    };

    // Looks the agent's functions up, unless those of the last collection are still current.
    void LookUpFunctions(const LibrariesInUse* inUse) noexcept;
    bool IsTracing() const noexcept;
    RARELY_CALLED void LogFailure(const wchar_t* name, const wchar_t* value, int32_t code) const noexcept;

    // Both are set before the bag is.
    std::optional<TextFunctions> functions;
    int32_t (*addProperty)(ny_property_bag_t* bag, const char* path, const char* name, ny_variant_t* value) = nullptr;
    std::atomic<int32_t> logLevel = 0;
    const ModuleInterface<VsKitMsgbus::ILogSink> sink;
    std::atomic<ny_property_bag_t*> bag = nullptr;  // null outside a collection
    const ModuleInterface<VsKitMsgbus::INYCollectProperties> collector;
};

// Two collections of one product never overlap.
inline auto& CollectorTable() {
    return TableOfProcess<RegistrationTable<CTheCollectProperties, CallGate::Admission::OneThreadAtATime>>();
}

}  // namespace bridge
