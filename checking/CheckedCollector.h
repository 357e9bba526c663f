#pragma once

#include <memory>
#include <utility>

#include "VsMsgbus/CollectProperties.h"
#include "checking/CheckedSink.h"
#include "checking/Lent.h"
#include "checking/Registration.h"

namespace checking {

// The set that the bridge lends a module's collector, to set properties with.
class CheckedPropertySet final : public VsKitMsgbus::INYCollectProperties::ISet,
                                 public Lent<VsKitMsgbus::INYCollectProperties::ISet, LentFor::AnyThread> {
public:
    bool SetProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) override;
};

// A module's collector. It is given the same set each time, from CollectProperties until GetLogLevel has returned.
class CheckedCollector final : public VsKitMsgbus::INYCollectProperties, public Registration {
public:
    // `moduleSink` may be null; the bridge may use it as long as the collector.
    CheckedCollector(const wchar_t* productId, VsKitMsgbus::INYCollectProperties* moduleCollector,
                     std::shared_ptr<CheckedSink> moduleSink);
    ~CheckedCollector() override;

    void BeRemoved() noexcept override;

    void CollectProperties(bool full, ISet* set) override;
    int32_t GetLogLevel() override;

private:
    VsKitMsgbus::INYCollectProperties* const collector;
    const std::shared_ptr<CheckedSink> sink;
    CheckedPropertySet* const lent;
};

}  // namespace checking
