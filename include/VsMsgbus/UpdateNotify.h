/// @file
/// Update notification: how a module hears of the agent's updates and answers its questions about the product.
#pragma once

#include <cstdint>

/// How modules are handed text.
namespace VsKit {

/// A zero-terminated UTF-16 text, or a key, handed to a module by value.
using cp_wchar = const wchar_t*;

}  // namespace VsKit

namespace VsKitMsgbus {

/// What GetProductInfo answers: 32 bits, handed to the agent unchanged. The module and the agent agree on the values;
/// the bridge itself knows one.
enum etag_PRODUCT_RETURN_VALUE : int32_t {
    /// The bridge's own answer for a product that has no callback, or whose callback failed.
    ProductReturnNotAvailable = 1,
};

/// What a module implements to hear of updates. The module owns it and keeps it alive until
/// VsKitMsgbusRemoveUpdateNotify has returned. The order of the slots is the contract.
///
/// The mask that the product gives to VsMsgbusEntry has to name VsMsgbusServiceUpdate: only then is the product
/// registered with the agent for this service.
///
/// All operations are called on a thread of the agent's, for one product never two at a time. Texts are zero-terminated
/// UTF-16, never null (a text that the agent lacks comes empty), and valid during the call. What an operation throws
/// goes no further: the agent is then answered as for a product that has no callback.
class INYUpdateNotifyCallback {
public:
    /// What the bridge hands to GetProductInfo; owned by the bridge, valid during that call.
    class ISet {
    public:
        /// Slot 1: Gives the value of what was asked for; the text is copied. Null and an empty text empty the value.
        /// May be called any number of times on one thread at a time: the last value is the one that counts.
        ///
        /// Always returns true. A value that found no memory makes the whole question fail.
        virtual bool Set(const wchar_t* value) = 0;

    protected:
        ~ISet() = default;
    };

    /// Slot 1: The agent tells of an update: its second, fourth and third text, in this order, and its number, which
    /// the module may change as it likes. The result goes to the agent; without a callback it is 2.
    virtual int32_t UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third,
                                 uint32_t* number) = 0;

    /// Slot 2: The agent asks for the value of `key`; `second` is its second text. The value is given through `set` and
    /// is empty when it is not; the agent gets it whatever the result is.
    virtual etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key, ISet* set) = 0;

    /// Slot 3: The agent sets the value of `key`; `second` is its second text. The result goes to the agent; without a
    /// callback it is 1.
    virtual int32_t SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) = 0;

protected:
    ~INYUpdateNotifyCallback() = default;
};

}  // namespace VsKitMsgbus

extern "C" {

/// Registers the module's callback under a product id, before or after VsMsgbusEntry and whether or not the agent is
/// there. Any thread.
///
/// @param productId  zero-terminated UTF-16, compared exactly; the id given to VsMsgbusEntry, whose mask has to name
///                   VsMsgbusServiceUpdate for the agent to call the product.
/// @param callback   not owned; see INYUpdateNotifyCallback.
/// @param context    whatever the module likes; kept and never looked at.
///
/// @returns true when the id has a callback afterwards: the first registration of an id stays in force, a second one
/// changes nothing, is answered true, and costs its memory until the process ends. False when productId or callback is
/// null or memory ran out.
bool VsKitMsgbusSetUpdateNotify(const wchar_t* productId, VsKitMsgbus::INYUpdateNotifyCallback* callback,
                                void* context) noexcept;

/// Takes the callback of a product id away. Any thread. No call enters the callback any more; calls that run on other
/// threads are waited for, at most 15 seconds, so that the module may free it and unload. From inside the callback's
/// own operations this returns at once.
///
/// Always returns true, also for null, for an id that has no callback, and after 15 seconds with a thread still inside:
/// convention 6 of VsMsgbus.h says how to know.
bool VsKitMsgbusRemoveUpdateNotify(const wchar_t* productId) noexcept;

}  // extern "C"
