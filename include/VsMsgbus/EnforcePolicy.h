/// @file
/// Policy enforcement: how a module is told of its policies, and reads them.
#pragma once

#include <cstdint>
#include <string>

#include "VsMsgbus/LpcBuffer.h"

namespace VsKitMsgbus {

/// What a module implements to enforce policies. The module owns it and keeps it alive until
/// VsKitMsgbusRemoveEnforcerPolicy has returned. The order of the slots is the contract.
///
/// The mask that the product gives to VsMsgbusEntry has to name VsMsgbusServicePolicy: only then is the product
/// registered with the agent for this service.
///
/// The operations are called on a thread of the agent's, for one product never two at a time. What they throw ends the
/// notification with a failure and goes no further.
class INYEnforcePolicy {
public:
    /// What the bridge hands to EnforcePolicy; owned by the bridge. Use it only while EnforcePolicy runs and on that
    /// thread. Each operation asks the agent anew and gives what the agent holds at that moment.
    class IPolicyBag {
    public:
        /// What a module implements to be told of policies, one item after the other, on the thread that asks. Each
        /// operation returns true to go on. Every text is zero-terminated UTF-16, valid during the call, and null where
        /// the policy has none; of a text with a zero in it the part before that zero is seen.
        ///
        /// What an operation throws ends the walk and leaves the operation of the bag that walks; an exception of the
        /// bridge's own (from an operation of the bridge that was called inside) is the walk's failure instead.
        class ICallbacks {
        public:
            /// Slot 1: One policy object. False: nothing more of this one, on with the next.
            virtual bool OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                                     const wchar_t* name) = 0;
            /// Slot 2: The settings object of that policy with its two parameters, told before each of its sections.
            /// False: nothing of this section, on with the next.
            virtual bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) = 0;
            /// Slot 3: One section; `reserved` is null. False: no settings of this section, on with the next.
            virtual bool OnSection(const wchar_t* name, const wchar_t* reserved) = 0;
            /// Slot 4: One setting of that section. False: no more settings of this section, on with the next.
            virtual bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) = 0;

        protected:
            ~ICallbacks() = default;
        };

        /// Slot 1: Tells `callbacks` of the policies that the agent holds for the user account `user` of `domain` of
        /// the product. Either text may be empty; null is taken as empty. Answers as EnumeratePolicies does.
        virtual bool EnumerateUserPolicies(const wchar_t* productId, ICallbacks* callbacks, const wchar_t* user,
                                           const wchar_t* domain) = 0;

        /// Slot 2: Tells `callbacks` of the machine's policies for the product, except for the setting "bopEnabled" of
        /// policies of the category "QTP_BufferOverflow_Policies".
        ///
        /// When OnContainer returned true, the names of policies of five categories, compared exactly, are recorded in
        /// the registry: as text (REG_SZ) in `HKEY_LOCAL_MACHINE\SOFTWARE\Corvane\Endpoint\AV`, in a value for each
        /// category. Of several policies of a category the name of the last one stays.
        ///
        ///     category                        value
        ///     QTP_General_Policies            OASPolicyName
        ///     QTP_OnDemandScan_Policies       ODSPolicyName
        ///     QTP_BehaviorBlock_Policies      APPolicyName
        ///     QTP_BufferOverflow_Policies     EPPolicyName
        ///     QTP_CommonScan_Policies         CommonScanPolicyName
        ///
        /// The bridge never creates that key. Where it is missing, or this process may not open it with full access,
        /// nothing is recorded and nothing is said; the walk goes on. What is recorded, and a value that could not be
        /// written, is told to the host's log (loglib/LogLib.h).
        ///
        /// @returns true when all policies were told, also when there is none. False when productId or callbacks is
        /// null, when there is no agent client, or when the agent answered an error: what was told until then stays
        /// told, and the registration's sink gets, at level 5, "Failed to iterate the policy bag for product id ID,
        /// exception CODE".
        virtual bool EnumeratePolicies(const wchar_t* productId, ICallbacks* callbacks) = 0;

        /// Slot 3: Frees what `result` holds and writes into it, as wide text, one line for each item that
        /// EnumeratePolicies gives for the bag's own product; empty text when there is none. A walk that fails gives
        /// the lines until then. When memory runs out for the text, result is left empty. Null is left alone. The
        /// caller frees the text with result->Release(). Records names in the registry as EnumeratePolicies does.
        virtual void Dump(lpc_buffer* result) = 0;

        /// Slot 4: The digests of the product's policy objects, one behind the other; `productId` is UTF-8. After an
        /// error of the agent's, those before it; empty for null and when there is no agent client.
        ///
        /// A std::string cannot cross from one C++ library to another: only a module that has the C++ library of the
        /// bridge may call this, which is mingw-w64's g++ with its own. For every other the call does not compile.
        /// Where the bridge was built with another library, and the module with the same one, the module's build
        /// defines VSMSGBUS_SAME_CPP_LIBRARY.
#if defined(VSMSGBUS_SAME_CPP_LIBRARY) || (defined(__GLIBCXX__) && _GLIBCXX_USE_CXX11_ABI)
        virtual std::string GetDigest(const char* productId) = 0;
#else
        template <class Text>
        auto GetDigest(Text productId) {
            static_assert(sizeof(Text) == 0,
                          "GetDigest returns a std::string of another C++ library: call GetDigestText or Digest");
            return productId;
        }
        /// The place of slot 4. Not to be called.
        virtual void ReservedForGetDigest() = 0;
#endif

        /// Slot 5: What GetDigest gives, as narrow text in `digests`: what that holds is freed first. The caller frees
        /// the text with digests->Release(). When memory runs out for the text, digests is left empty.
        ///
        /// @returns true when all digests are there, also when there is none. False, with those before the error, after
        /// one of the agent's or for want of memory; false as well for null and when there is no agent client.
        virtual bool GetDigestText(const char* productId, lpc_buffer* digests) = 0;

        /// What GetDigestText gives, in a string of the module's own C++ library.
        std::string Digest(const char* productId) {
            lpc_buffer digests;
            GetDigestText(productId, &digests);
            return TakeNarrowText(digests);
        }

    protected:
        ~IPolicyBag() = default;
    };

    /// Slot 1: Called before each EnforcePolicy: the level of tracing that the module wants.
    virtual int32_t GetLogLevel() = 0;

    /// Slot 2: Never called.
    virtual void Reserved() = 0;

    /// Slot 3: The product's policies may have changed: read them through `bag`, which is valid during this call alone.
    virtual void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) = 0;

protected:
    ~INYEnforcePolicy() = default;
};

}  // namespace VsKitMsgbus

extern "C" {

/// Registers the module's enforcer under a product id, before or after VsMsgbusEntry and whether or not the agent is
/// there. Any thread.
///
/// @param productId  zero-terminated UTF-16, compared exactly; the id given to VsMsgbusEntry, whose mask has to name
///                   VsMsgbusServicePolicy for the agent to notify the product.
/// @param enforcer   not owned; see INYEnforcePolicy.
/// @param sink       a VsKitMsgbus::ILogSink of the module's, not owned, or null: where failures to read policies are
///                   written. Alive as long as the enforcer.
///
/// @returns true when the id has an enforcer afterwards: the first registration of an id stays in force, a second one
/// changes nothing and is answered true. False when productId or enforcer is null or memory ran out.
bool VsKitMsgbusSetEnforcePolicy(const wchar_t* productId, VsKitMsgbus::INYEnforcePolicy* enforcer,
                                 void* sink) noexcept;

/// Takes the enforcer of a product id away. Any thread. No call enters the enforcer any more; calls that run on other
/// threads are waited for, at most 15 seconds, so that the module may free it and unload. From inside the enforcer's
/// own callback this returns at once, and the enforcer is not called again after that callback.
///
/// Always returns true, also for null, for an id that has no enforcer, and after 15 seconds with a thread still inside:
/// convention 6 of VsMsgbus.h says how to know.
bool VsKitMsgbusRemoveEnforcerPolicy(const wchar_t* productId) noexcept;

/// Asks the agent to notify the product of its policies again; the notification comes on a thread of the agent's, maybe
/// before this has returned. Any thread, between VsMsgbusEntry and VsMsgbusExit. A null id is taken as the empty one.
///
/// @returns 1 when the agent will; 0 when it refuses, when it is not there, when no product has entered the bridge, and
/// for an id of 65,536 characters or more.
int VsKitEnforceLocalPolicy(const wchar_t* productId) noexcept;

}  // extern "C"
