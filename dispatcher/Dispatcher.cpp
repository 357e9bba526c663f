#include "dispatcher/Dispatcher.h"

#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "agent/ny_agent.h"

namespace {

// One lock guards the process's dispatcher from its creation to the closing of its last library, so that a creation can
// neither see a half-made dispatcher nor load tables that an earlier one is about to clear. It may be entered again: a
// line logged while libraries close can lead back here, and then finds no dispatcher.
CriticalSection lifeLock;
Dispatcher* current = nullptr;

int32_t Initialise(Dispatcher& dispatcher, const char* defaultPath) noexcept {
    const std::lock_guard guard(dispatcher.lock);
    const DispatcherOperations* operations = dispatcher.operations;
    if (operations == nullptr || operations->init == nullptr || operations->init(dispatcher, defaultPath) != NY_OK) {
        return NY_DISPATCHER_INIT;
    }
    return NY_OK;
}

void Deinitialise(Dispatcher& dispatcher) noexcept {
    const std::lock_guard guard(dispatcher.lock);
    if (dispatcher.operations != nullptr && dispatcher.operations->deinit != nullptr) {
        dispatcher.operations->deinit(dispatcher);
    }
}

// A reference for the time of one load or unload, so that the last holder cannot free the dispatcher under it.
class DispatcherInUse {
public:
    DispatcherInUse() noexcept {
        const std::lock_guard guard(lifeLock);
        dispatcher = current;
        if (dispatcher != nullptr) {
            ++dispatcher->references;
        }
    }

    ~DispatcherInUse() { DispatcherRelease(dispatcher); }
    DispatcherInUse(const DispatcherInUse&) = delete;
    DispatcherInUse& operator=(const DispatcherInUse&) = delete;

    explicit operator bool() const noexcept { return dispatcher != nullptr; }
    Dispatcher* operator->() const noexcept { return dispatcher; }
    Dispatcher* Get() const noexcept { return dispatcher; }

private:
    Dispatcher* dispatcher = nullptr;
};

}  // namespace

int32_t DispatcherCreate(const char* defaultPath, Dispatcher** slot, const DispatcherOperations* operations) noexcept {
    if (slot == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    const std::lock_guard guard(lifeLock);
    if (current == nullptr) {
        std::unique_ptr<Dispatcher> created(new (std::nothrow) Dispatcher);
        if (created == nullptr) {
            return NY_OUT_OF_MEMORY;
        }
        created->operations = operations;
        created->context = slot;
        const int32_t result = Initialise(*created, defaultPath);
        if (result != NY_OK) {
            return result;
        }
        current = created.release();
    }
    ++current->references;
    *slot = current;
    return NY_OK;
}

int32_t DispatcherRelease(Dispatcher* dispatcher) noexcept {
    if (dispatcher == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    const std::lock_guard guard(lifeLock);
    if (--dispatcher->references == 0) {
        current = nullptr;
        Deinitialise(*dispatcher);
        delete dispatcher;
    }
    return NY_OK;
}

int32_t DispatcherSetLogSink(Dispatcher* dispatcher, LogLineSink sink, void* userData,
                             LogSeverity leastSevere) noexcept {
    if (dispatcher == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    const std::lock_guard guard(dispatcher->lock);
    dispatcher->log.SetSink(sink, userData, leastSevere);
    return NY_OK;
}

int32_t DispatcherLoad(const LoadRequest& request) noexcept {
    const DispatcherInUse dispatcher;
    if (request.product == nullptr || request.library == nullptr || !dispatcher) {
        return NY_INVALID_ARGUMENT;
    }
    const std::lock_guard guard(dispatcher->lock);
    const DispatcherOperations* operations = dispatcher->operations;
    const bool isLoaded =
        operations != nullptr && operations->load != nullptr && operations->load(dispatcher.Get(), request) == NY_OK;
    return isLoaded ? NY_OK : NY_LIBRARY_LOAD;
}

int32_t DispatcherUnload(const char* product, const char* library) noexcept {
    const DispatcherInUse dispatcher;
    if (product == nullptr || library == nullptr || !dispatcher) {
        return NY_INVALID_ARGUMENT;
    }
    const std::lock_guard guard(dispatcher->lock);
    const DispatcherOperations* operations = dispatcher->operations;
    const bool isUnloaded = operations != nullptr && operations->unload != nullptr &&
                            operations->unload(dispatcher.Get(), product, library) == NY_OK;
    return isUnloaded ? NY_OK : NY_LIBRARY_UNLOAD;
}
