// The process-wide dispatcher: finds the agent's runtime directory, opens the agent's libraries by name and resolves
// the function tables of the lazy entry points.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/OwnerLock.h"
#include "dispatcher/DispatcherLog.h"
#include "dispatcher/Grouper.h"

namespace bridge {

struct Dispatcher;

// A group of agent functions that a caller wants resolved.
struct LoadRequest {
    const char* group;         // may be null
    const char* product;       // the agent's software id
    const char* library;       // file name
    uint32_t* version;         // the caller's version variable, or null
    const char* const* names;  // `count` function names
    TablePointer* table;       // where the caller keeps its table pointer
    size_t count;
};

// The operations of a dispatcher; a test may put others in place.
struct DispatcherOperations {
    int32_t (*init)(Dispatcher& dispatcher, const char* defaultPath);
    int32_t (*load)(Dispatcher* dispatcher, const LoadRequest& request);
    int32_t (*unload)(Dispatcher* dispatcher, const char* product, const char* library);
    void (*deinit)(Dispatcher& dispatcher);
};

extern const DispatcherOperations dispatcherOperations;

// A library's function that tells its version. A load finds it; it is called once the thread has left the dispatcher's
// lock.
struct VersionQuestion {
    GetVersionFunction ask = nullptr;  // null: nothing to ask
    std::shared_ptr<LoadedLibrary> library;
    uint32_t* version = nullptr;  // the caller's variable
};

struct Dispatcher {
    const DispatcherOperations* operations = nullptr;
    Dispatcher** context = nullptr;  // the slot of the holder that created it
    CriticalSection lock;            // around every load and unload
    Grouper grouper GUARDED_BY(lock);
    uint32_t references = 0;  // one per holder; guarded by the lock of the process's dispatcher
    DispatcherLog log GUARDED_BY(lock);
    VersionQuestion question GUARDED_BY(lock);
    std::weak_ptr<LibrariesInUse> users GUARDED_BY(lock);  // the threads inside them share it
    bool isReleased GUARDED_BY(lock) = false;              // a load that comes too late does nothing
};

// Makes the caller a holder of the process's dispatcher, creating it for the first one: stores it in `*slot`. A null
// defaultPath means that products without a runtime directory have none.
// NY_OK; NY_INVALID_ARGUMENT for a null slot; NY_OUT_OF_MEMORY; NY_DISPATCHER_INIT when its init is missing or fails.
// On failure the slot is left as it was.
int32_t DispatcherCreate(const char* defaultPath, Dispatcher** slot,
                         const DispatcherOperations* operations = &dispatcherOperations) noexcept;

// Drops one reference. The last one closes every library and clears every caller's table pointer; a load under way on
// another thread comes first. A library that a thread is inside of is unloaded later, see LibrariesInUse.
// NY_INVALID_ARGUMENT for null, else NY_OK.
int32_t DispatcherRelease(Dispatcher* dispatcher) noexcept;

// Sends the dispatcher's log lines to `target`: the lines of one operation in their order, on the thread of the
// operation, after it has left the dispatcher's lock. NY_INVALID_ARGUMENT for a null dispatcher, else NY_OK.
int32_t DispatcherSetLogSink(Dispatcher* dispatcher, LogTarget target) noexcept;

// Loads a group through the process's dispatcher, one thread at a time. NY_OK; NY_INVALID_ARGUMENT when product or
// library is null or there is no dispatcher; NY_LIBRARY_LOAD when it failed for any other reason.
int32_t DispatcherLoad(const LoadRequest& request) noexcept;

// Drops one use of a library; the last one closes it. NY_OK; NY_INVALID_ARGUMENT when an argument is null or there is
// no dispatcher; NY_LIBRARY_UNLOAD when it failed.
int32_t DispatcherUnload(const char* product, const char* library) noexcept;

}  // namespace bridge
