/// @file
/// Everything that a module compiles against. A module enters with VsMsgbusEntry, registers what it offers, and leaves
/// with VsMsgbusExit before it is unloaded. The @ref conventions below hold for all exports.
///
/// @namespace VsKitMsgbus
/// What modules implement, and the structures that cross between them and the bridge.
///
/// @page conventions Conventions of the bridge
///
///  1. Exports are plain functions with C linkage, and one member, VsKitMsgbus::lpc_buffer::Release; none lets an
///     exception out. Texts are zero-terminated; wide text is UTF-16, narrow text UTF-8 unless a comment says
///     otherwise.
///  2. Null: every export accepts null pointers and answers as its comment says.
///  3. Ownership: what a module hands in stays the module's; the bridge copies texts and never frees interfaces. What
///     the bridge hands to a callback is the bridge's, and is gone when the callback has returned. Text that an export
///     returns in a VsKitMsgbus::lpc_buffer is the caller's, to be freed with its Release and nothing else.
///  4. Errors: an export tells of them by what it returns, as its comment says, and changes nothing where it says so.
///     Running out of memory is one of them.
///  5. Threads: every export may be called from any thread, except that Entry and Exit are made one at a time. None is
///     for DllMain.
///  6. Callbacks come on the threads that the comments name: the agent's, the bridge's watcher's, or the module's own
///     inside an export. The bridge holds no lock of its own meanwhile that other modules could wait for, and a
///     callback may call exports. A Remove waits for the callbacks that run on other threads, at most 15 seconds, and
///     answers true also when a thread is still inside then. Its time tells: a Remove that was not called inside a
///     callback of the same interface and returned in less than 15 seconds has seen all threads out. After one that
///     took that long a thread may be inside: keep the object, and do not unload the module. A second Remove does not
///     wait again. Hold no lock that a callback needs.
///  7. Interfaces: the order of the slots is the contract. No interface has two operations of one name, and where there
///     is a destructor it is the last slot, so that the order is the same for mingw-w64's and Microsoft's compilers. A
///     module derives from an interface directly, and overrides what is there.
///  8. What a callback throws is caught by the bridge, answered as the callback's comment says, and destroyed, whether
///     mingw-w64's or Microsoft's compiler built the module; what a walk's callback throws may also be caught by the
///     module around the walk, which then holds nothing any more. With Microsoft's runtime, what was thrown on by a
///     bare `throw;` to the bridge may not be destroyed. Only C++ exceptions are caught: an access violation or the
///     like goes on to the handlers of the module, the process or the system, and what the bridge holds for the call
///     stays held.
///  9. What crosses between bridge and module are numbers, pointers to text, pointers to interfaces and plain
///     structures. Classes of a C++ library do not cross: a std::string that is returned by value is another thing in
///     another library. One operation does so by contract, IPolicyBag::GetDigest: where the module does not have the
///     bridge's library, it does not compile, and GetDigestText takes its place. Members that are not virtual and give
///     a std::string make it in the module.
///  10. An absent agent is no error: registrations wait for it, and calls that need it answer that it is not there. An
///     agent whose registry key was missing is noticed within 15 seconds, a change in a key that is there at once.
///  11. A product is registered with the agent for the services that the mask of its VsMsgbusEntry names. They are
///     VsMsgbusServiceProperty for VsKitMsgbusSetCollectProperties, VsMsgbusServicePolicy for
///     VsKitMsgbusSetEnforcePolicy, VsMsgbusServiceTask for VsKitMsgbusSetTaskEnforcer, VsMsgbusServiceUpdate for
///     VsKitMsgbusSetUpdateNotify. What a module asks of the agent (crypto, information) and health checks need no
///     bit.
#pragma once

#include "VsMsgbus/CollectProperties.h"
#include "VsMsgbus/Crypto.h"
#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/Entry.h"
#include "VsMsgbus/HealthCheck.h"
#include "VsMsgbus/Information.h"
#include "VsMsgbus/LogSink.h"
#include "VsMsgbus/LpcBuffer.h"
#include "VsMsgbus/TaskEnforcer.h"
#include "VsMsgbus/UpdateNotify.h"
#include "VsMsgbus/Version.h"
#include "VsMsgbus/ny_dl.h"
#include "VsMsgbus/ny_temp_buffer.h"
