/// @file
/// Property collection: how a module answers the agent's request for its properties.
#pragma once

#include <cstdint>

namespace VsKitMsgbus {

/// What a module implements to answer property requests. The module owns it and keeps it alive until
/// VsKitMsgbusRemoveCollectProperties has returned. The order of the slots is the contract.
///
/// The mask that the product gives to VsMsgbusEntry has to name VsMsgbusServiceProperty: only then is the product
/// registered with the agent for this service.
///
/// Both operations are called on a thread of the agent's, for one product never two at a time. What they throw ends the
/// request with a failure and goes no further.
class INYCollectProperties {
public:
    /// What the bridge hands to CollectProperties; owned by the bridge.
    class ISet {
    public:
        /// Slot 1: Gives one property to the agent: three zero-terminated UTF-16 texts, which are copied.
        /// A null path or name is an empty one. Call it only while CollectProperties runs; a thread that
        /// CollectProperties waits for may call it too.
        ///
        /// @returns true when the agent took the property. False when the value is null, when no collection is under
        /// way, or when the agent refused it or is gone; a refusal is also written to the registration's sink, at level
        /// 5: "Failed to add property for <name>= <value>, exception <code>".
        virtual bool SetProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) = 0;

        /// Slot 2: For the bridge alone.
        virtual ~ISet() = default;
    };

    /// Slot 1: Set the product's properties through `set`. `full` is always true.
    virtual void CollectProperties(bool full, ISet* set) = 0;

    /// Slot 2: Called after each CollectProperties: the level of tracing that the module wants from the next one on; 4
    /// and more is verbose.
    virtual int32_t GetLogLevel() = 0;

protected:
    ~INYCollectProperties() = default;
};

}  // namespace VsKitMsgbus

extern "C" {

/// Registers the module's collector under a product id, before or after VsMsgbusEntry and whether or not the agent is
/// there. Any thread.
///
/// @param productId  zero-terminated UTF-16, compared exactly; the id given to VsMsgbusEntry, whose mask has to name
///                   VsMsgbusServiceProperty for the agent to ask the product.
/// @param collector  not owned; see INYCollectProperties.
/// @param sink       a VsKitMsgbus::ILogSink of the module's, not owned, or null: where failures to add a property are
///                   written. Alive as long as the collector.
///
/// @returns true when the id has a collector afterwards: the first registration of an id stays in force, a second one
/// changes nothing and is answered true. False when productId or collector is null or memory ran out.
bool VsKitMsgbusSetCollectProperties(const wchar_t* productId, VsKitMsgbus::INYCollectProperties* collector,
                                     void* sink) noexcept;

/// Takes the collector of a product id away. Any thread. No call enters the collector any more; calls that run on other
/// threads are waited for, at most 15 seconds, so that the module may free it and unload. From inside the collector's
/// own callback this returns at once, and the collector is not called again after that callback.
///
/// Always returns true, also for null, for an id that has no collector, and after 15 seconds with a thread still
/// inside: convention 6 of VsMsgbus.h says how to know.
bool VsKitMsgbusRemoveCollectProperties(const wchar_t* productId) noexcept;

}  // extern "C"
