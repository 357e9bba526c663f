#include "dispatcher/Dispatcher.h"

#include <algorithm>
#include <utility>

#include "agent/ny_agent.h"
#include "base/Boundary.h"
#include "base/NoDestroyAtExit.h"
#include "dispatcher/AgentCalls.h"

namespace bridge {

namespace {

// One lock guards the process's dispatcher from its creation to the closing of its last library, so that a creation can
// neither see a half-made dispatcher nor load tables that an earlier one is about to clear. Beside the dispatcher's own
// lock it is the one lock under which code of the agent's runs, that of its libraries' loading and unloading.
CriticalSection lifeLock;
NoDestroyAtExit<std::shared_ptr<Dispatcher>> current GUARDED_BY(lifeLock);

std::shared_ptr<Dispatcher> Current() noexcept {
    const ScopedLock guard(lifeLock);
    return *current;
}

int32_t Initialise(Dispatcher& dispatcher, const char* defaultPath) noexcept {
    const ScopedLock guard(dispatcher.lock);
    const DispatcherOperations* operations = dispatcher.operations;
    if (operations == nullptr || operations->init == nullptr || operations->init(dispatcher, defaultPath) != NY_OK) {
        return NY_DISPATCHER_INIT;
    }
    return NY_OK;
}

DispatcherLog::Lines Deinitialise(Dispatcher& dispatcher) noexcept {
    const ScopedLock guard(dispatcher.lock);
    dispatcher.isReleased = true;
    if (dispatcher.operations != nullptr && dispatcher.operations->deinit != nullptr) {
        dispatcher.operations->deinit(dispatcher);
    }
    return dispatcher.log.Take();
}

// The entry that a question is about, null when it was closed meanwhile.
LibraryEntry* EntryOf(Dispatcher& dispatcher, const VersionQuestion& question) noexcept REQUIRES(dispatcher.lock) {
    for (const auto& member : dispatcher.grouper.members) {
        for (const auto& entry : member->libraries) {
            if (entry->library == question.library) {
                return entry.get();
            }
        }
    }
    return nullptr;
}

// Calls the library's function and notes the version. The caller holds no lock: the function is the agent's.
void Ask(Dispatcher& dispatcher, const VersionQuestion& question) noexcept {
    if (question.ask == nullptr) {
        return;
    }
    uint32_t version = 0;
    const bool isTold = Guarded(false, [&] { return question.ask(&version) == NY_OK; });
    const ScopedLock guard(dispatcher.lock);
    if (LibraryEntry* const entry = EntryOf(dispatcher, question)) {
        *question.version = version;
        entry->version = isTold ? question.version : entry->version;
    }
}

// Runs an operation of the process's dispatcher under its lock, then delivers the log lines of that operation.
// NY_INVALID_ARGUMENT without a dispatcher; `whenFailed` for every failure, an empty slot included.
template <class Slot, class... Arguments>
int32_t RunLocked(int32_t whenFailed, Slot slot, const Arguments&... arguments) noexcept {
    const std::shared_ptr<Dispatcher> dispatcher = Current();
    if (dispatcher == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    int32_t result = NY_INVALID_ARGUMENT;
    DispatcherLog::Lines lines;
    VersionQuestion question;
    {
        const ScopedLock guard(dispatcher->lock);
        if (!dispatcher->isReleased) {
            const auto operation = dispatcher->operations != nullptr ? dispatcher->operations->*slot : nullptr;
            const bool isDone = operation != nullptr && operation(dispatcher.get(), arguments...) == NY_OK;
            result = isDone ? NY_OK : whenFailed;
        }
        lines = dispatcher->log.Take();
        question = std::exchange(dispatcher->question, {});
    }
    lines.Deliver();
    Ask(*dispatcher, question);
    return result;
}

}  // namespace

std::shared_ptr<LibrariesInUse> LibrariesInUse::Share() {
    const std::shared_ptr<Dispatcher> dispatcher = Current();
    if (dispatcher == nullptr) {
        return nullptr;
    }
    const ScopedLock guard(dispatcher->lock);
    std::shared_ptr<LibrariesInUse> shared = dispatcher->users.lock();
    if (shared == nullptr && !dispatcher->isReleased) {
        shared.reset(new LibrariesInUse, DeleteOutsideAgentCalls<LibrariesInUse>);
        for (const auto& member : dispatcher->grouper.members) {
            for (const auto& entry : member->libraries) {
                shared->libraries.push_back(entry->library);
            }
        }
        shared->closings = libraryClosings.load(std::memory_order_acquire);
        dispatcher->users = shared;
    }
    return shared;
}

void LibrariesInUse::Add(const std::shared_ptr<LoadedLibrary>& library) {
    if (std::find(libraries.begin(), libraries.end(), library) == libraries.end()) {
        libraries.push_back(library);
    }
}

int32_t DispatcherCreate(const char* defaultPath, Dispatcher** slot, const DispatcherOperations* operations) noexcept {
    if (slot == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        const ScopedLock guard(lifeLock);
        if (*current == nullptr) {
            auto created = std::make_shared<Dispatcher>();
            created->operations = operations;
            created->context = slot;
            const int32_t result = Initialise(*created, defaultPath);
            if (result != NY_OK) {
                return result;
            }
            *current = std::move(created);
        }
        ++(*current)->references;
        *slot = (*current).get();
        return NY_OK;
    });
}

int32_t DispatcherRelease(Dispatcher* dispatcher) noexcept {
    if (dispatcher == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    // Delivered and freed with no lock held.
    std::shared_ptr<Dispatcher> released;
    DispatcherLog::Lines lines;
    {
        const ScopedLock guard(lifeLock);
        if (--dispatcher->references == 0) {
            released = std::exchange(*current, nullptr);
            lines = Deinitialise(*dispatcher);
        }
    }
    lines.Deliver();
    return NY_OK;
}

int32_t DispatcherSetLogSink(Dispatcher* dispatcher, LogTarget target) noexcept {
    if (dispatcher == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    const ScopedLock guard(dispatcher->lock);
    dispatcher->log.SetTarget(std::move(target));
    return NY_OK;
}

int32_t DispatcherLoad(const LoadRequest& request) noexcept {
    if (request.product == nullptr || request.library == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    return RunLocked(NY_LIBRARY_LOAD, &DispatcherOperations::load, request);
}

int32_t DispatcherUnload(const char* product, const char* library) noexcept {
    if (product == nullptr || library == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    return RunLocked(NY_LIBRARY_UNLOAD, &DispatcherOperations::unload, product, library);
}

}  // namespace bridge
