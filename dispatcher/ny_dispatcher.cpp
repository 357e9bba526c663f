// The operations of the bridge's dispatcher: what DispatcherLoad and its siblings do under the lock.
#include <cstring>

#include "agent/ny_agent.h"
#include "base/Boundary.h"
#include "dispatcher/Dispatcher.h"

namespace bridge {

namespace {

// Calls slot `slot` of an object's operations: NY_INVALID_ARGUMENT without operations, NY_UNEXPECTED for an empty slot.
template <class Object, class Slot, class... Arguments>
int32_t CallOperation(Object& object, Slot slot, Arguments&&... arguments) {
    if (object.operations == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    const auto operation = object.operations->*slot;
    return operation != nullptr ? operation(object, std::forward<Arguments>(arguments)...) : NY_UNEXPECTED;
}

int32_t LogFailedStep(const DispatcherLog& log, const char* step, int32_t result) noexcept {
    if (result != NY_OK) {
        log.Write(SeverityFailure, "%s failed <%d>", step, static_cast<int>(result));
    }
    return result;
}

int32_t LoadTable(Member& member, LibraryEntry& entry, const LoadRequest& request, const DispatcherLog& log) {
    if (request.table->load(std::memory_order_acquire) != nullptr) {
        log.Write(SeverityDetail, "sym_addr_table is not null");
        return NY_OK;
    }
    log.Write(SeverityDetail, "ny_grouper_load_sym_table");
    // However often a library is loaded, loading keeps one reference: one unload closes it.
    if (entry.references.load() > 1) {
        --entry.references;
    }
    return LogFailedStep(log, "ny_grouper_load_sym_table",
                         CallOperation(member, &MemberOperations::load_sym_table, request.library, request.names,
                                       request.table, request.count, log));
}

// Threads that are inside the libraries keep this one, too. False when there is no memory for that.
bool KeepForUsers(Dispatcher& dispatcher, const LibraryEntry& entry) noexcept REQUIRES(dispatcher.lock) {
    const std::shared_ptr<LibrariesInUse> users = dispatcher.users.lock();
    return users == nullptr || Guarded([&] { users->Add(entry.library); });
}

// From the member on; the product is one.
int32_t LoadFromMember(Dispatcher& dispatcher, const LoadRequest& request) REQUIRES(dispatcher.lock) {
    Member* member = nullptr;
    int32_t result = CallOperation(dispatcher.grouper, &GrouperOperations::find_member, request.product, &member);
    if (LogFailedStep(dispatcher.log, "ny_grouper_find_member for product", result) != NY_OK) {
        return result;
    }
    result = CallOperation(*member, &MemberOperations::add_library, request.library, dispatcher.log);
    if (LogFailedStep(dispatcher.log, "ny_grouper_add_member library", result) != NY_OK) {
        return result;
    }
    LibraryEntry* entry = nullptr;
    result = CallOperation(*member, &MemberOperations::find_library, request.library, &entry);
    if (LogFailedStep(dispatcher.log, "ny_grouper_find_member library", result) != NY_OK) {
        return result;
    }
    if (!KeepForUsers(dispatcher, *entry)) {
        return NY_OUT_OF_MEMORY;
    }
    result = LoadTable(*member, *entry, request, dispatcher.log);
    if (result == NY_OK && request.version != nullptr && *request.version == 0) {
        dispatcher.question = {entry->FindGetVersion(request.group != nullptr ? request.group : "", dispatcher.log),
                               entry->library, request.version};
    }
    return result;
}

int32_t Initialise(Grouper& grouper, const char* defaultPath) noexcept {
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        if (defaultPath != nullptr) {
            grouper.defaultPath = defaultPath;
        }
        grouper.operations = &grouperOperations;
        return NY_OK;
    });
}

int32_t ny_dispatcher_init(Dispatcher& dispatcher, const char* defaultPath) REQUIRES(dispatcher.lock) {
    return Initialise(dispatcher.grouper, defaultPath);
}

int32_t ny_dispatcher_load(Dispatcher* dispatcher, const LoadRequest& request) REQUIRES(dispatcher->lock) {
    if (dispatcher == nullptr || request.product == nullptr || request.library == nullptr || request.names == nullptr ||
        request.table == nullptr || request.count == 0) {
        return NY_INVALID_ARGUMENT;
    }
    dispatcher->log.Write(SeverityProgress, "ny_dispatcher_load %p %s:%s:%s", static_cast<void*>(dispatcher),
                          request.group != nullptr ? request.group : "(null)", request.product, request.library);
    int32_t result = CallOperation(dispatcher->grouper, &GrouperOperations::add_member, request.product);
    if (LogFailedStep(dispatcher->log, "ny_grouper_add_member", result) != NY_OK) {
        return result;
    }
    result = LoadFromMember(*dispatcher, request);
    dispatcher->log.Write(SeverityProgress, "ny_dispatcher_load returns <%d>", static_cast<int>(result));
    return result;
}

int32_t ny_dispatcher_unload(Dispatcher* dispatcher, const char* product, const char* library)
    REQUIRES(dispatcher->lock) {
    if (dispatcher == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    if (product == nullptr || library == nullptr) {
        return NY_LIBRARY_UNLOAD;
    }
    Member* member = nullptr;
    const int32_t result = CallOperation(dispatcher->grouper, &GrouperOperations::find_member, product, &member);
    return result == NY_OK ? CallOperation(*member, &MemberOperations::remove_library, library, dispatcher->log)
                           : result;
}

void ny_dispatcher_deinit(Dispatcher& dispatcher) REQUIRES(dispatcher.lock) {
    const GrouperOperations* operations = dispatcher.grouper.operations;
    if (operations != nullptr && operations->release != nullptr) {
        operations->release(dispatcher.grouper, dispatcher.log);
    }
}

}  // namespace

const DispatcherOperations dispatcherOperations = {ny_dispatcher_init, ny_dispatcher_load, ny_dispatcher_unload,
                                                   ny_dispatcher_deinit};

}  // namespace bridge
