/// @file
/// Entering and leaving the bridge.
#pragma once

#include <cstdint>

#include "VsMsgbus/LogSink.h"

/// The process-wide bridge instance and its record of the agent's client: handles to hand back, nothing to look into.
class VsMsgbus;
struct VsMsgbusClientRecord;

/// The services of VsMsgbusEntry's mask. Other bits are kept and ignored. Without a service's bit the product
/// is not registered with the agent for it: the interface is not called, and nothing is said.
enum VsMsgbusService : uint32_t {
    VsMsgbusServiceUpdate = 0x100,     ///< update notifications and product information: VsKitMsgbusSetUpdateNotify
    VsMsgbusServiceTask = 0x800,       ///< scheduled tasks: VsKitMsgbusSetTaskEnforcer
    VsMsgbusServicePolicy = 0x1000,    ///< policy enforcement: VsKitMsgbusSetEnforcePolicy
    VsMsgbusServiceProperty = 0x2000,  ///< property collection: VsKitMsgbusSetCollectProperties
};

extern "C" {

/// Enters the bridge for one product. The first Entry of the process creates the bridge instance, which from then on
/// follows the agent: it starts when the agent is installed (within this call, when it already is), stops when it is
/// removed, and starts again when it is upgraded. The bridge need not be told anything; an absent agent is no failure.
/// An agent whose registry key, `HKEY_LOCAL_MACHINE\Software\Corvane\Agent`, was missing is noticed within 15 seconds
/// of its installation; a change in a key that is there is noticed at once.
///
/// @param productId    the product's id, zero-terminated; it is copied. The same id, as wide text, names the product in
///                     the registrations of callback interfaces.
/// @param serviceMask  the VsMsgbusService bits for which the agent may call this product. The mask of the product's
///                     first Entry is the one that counts when the agent starts again; a later Entry of the same
///                     product attaches the services that it names at once and leaves the stored mask. Entries are not
///                     counted: one Exit leaves.
/// @param logSink      may be null. The first sink that is not null serves the whole process, until any product's Exit.
///                     It must stay alive until that Exit has returned.
/// @param outInstance  receives the bridge instance, the same for every product of the process.
///
/// From its first Entry on, VsMsgbus.dll stays in memory until the process ends: FreeLibrary takes it away no more, and
/// LoadLibrary gives the same module again. Its file is in use for that long. To replace it, rename it and put the new
/// one in its place; processes that start afterwards use that one.
///
/// @returns true on success. False when productId or outInstance is null, or when memory or the agent client could not
/// be had, or the library could not be kept: then nothing has changed, but that the library may stay. Also false when
/// the agent refused a service: then outInstance is written, the product is entered and must still be left with
/// VsMsgbusExit; the refused service is asked for again when the agent starts anew.
///
/// Call Entry and Exit from your load and unload paths, one at a time in a process. Never call them from DllMain. Two
/// Entries that meet all the same are both answered as if one had come after the other; an Exit must meet neither.
bool VsMsgbusEntry(const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink,
                   VsMsgbus** outInstance) noexcept;

/// Leaves the bridge for one product: the agent calls it no more once this has returned, except for a callback that is
/// calling Exit itself (called inside a callback while the agent comes or goes, Exit may return a moment before that).
/// The Exit that removes the last product stops the watcher, ends the agent client and destroys the bridge instance.
/// Every Exit takes the process-wide log sink away, even when other products stay.
///
/// @param productId  the id given to Entry; null leaves no product.
/// @param instance   the instance that Entry gave; null only takes the log sink away.
///
/// Always returns true. Waits at most 15 seconds for the watcher when it is at the products because the agent comes or
/// goes (but not inside a callback of the agent's), as long for the watcher to end, and as long for a running Write of
/// the sink; the agent itself waits for callbacks of the product that run on other threads. What could not end in time
/// is finished, and freed, by the watcher's own thread.
///
/// A process may end without leaving, also with threads inside the bridge: none of them is waited for.
bool VsMsgbusExit(const char* productId, VsMsgbus* instance) noexcept;

/// The bridge instance's record of the agent's client, valid until the last Exit. The instance is not tested for:
/// calling this before a successful Entry or after the last Exit is undefined.
VsMsgbusClientRecord* GetMsgbusClient() noexcept;

}  // extern "C"
