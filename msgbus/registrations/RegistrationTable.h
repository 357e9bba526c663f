#pragma once

#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/Attributes.h"
#include "base/Boundary.h"
#include "base/CallGate.h"
#include "base/NoDestroyAtExit.h"
#include "base/OwnerLock.h"
#include "msgbus/client/AgentUse.h"

namespace bridge {

// How the table treats a second record for an id. A leaked record is never freed, which the contract of some services
// asks for.
enum class DuplicateRecord { Dropped, Leaked };

// Loses the record for good. A function of its own, because leak reports are told by its name that this is meant.
template <class Entry>
NEVER_INLINED void LeakDuplicateRecord(std::shared_ptr<Entry> entry) noexcept {
    static_cast<void>(new (std::nothrow) std::shared_ptr<Entry>(std::move(entry)));
}

// The interfaces that modules registered, by product id. The exports write the table; the service objects look into it.
//
// The first registration of an id wins. The table's lock is held for the look-up, insertion or removal alone, never
// while a module runs. A record in use is shared by its users: Remove takes it out of the table at once, then waits
// until the module is done with it on other threads.
//
// `admission` says whether several threads may use one record at a time.
template <class Record, CallGate::Admission admission, DuplicateRecord duplicate = DuplicateRecord::Dropped>
class RegistrationTable {
public:
    // Registers a record made of the interface and `more`, unless the id has one: `duplicate` says what becomes of the
    // new record then. False, and nothing is registered, for a null id or interface, and when there is no memory.
    template <class Interface, class... More>
    bool Set(const wchar_t* productId, Interface* moduleInterface, More&&... more) noexcept {
        return productId != nullptr && moduleInterface != nullptr && Guarded([&] {
                   auto entry = std::make_shared<Entry>(moduleInterface, std::forward<More>(more)...);
                   std::wstring key(productId);
                   const ScopedLock guard(lock);
                   const bool isNew = entries.try_emplace(std::move(key), entry).second;
                   if constexpr (duplicate == DuplicateRecord::Leaked) {
                       if (!isNew) {
                           LeakDuplicateRecord(std::move(entry));
                       }
                   }
               });
    }

    // No call into the module begins any more; those that run on other threads are waited for, at most 15 seconds.
    // Returns at once when the calling thread is inside a call of this record. Always true, also for a null id and for
    // one that has no record.
    bool Remove(const wchar_t* productId) noexcept {
        Guarded([&] {
            if (const EntryPointer removed = productId != nullptr ? Take(productId) : nullptr) {
                removed->gate.CloseAndWait();
            }
        });
        return true;
    }

    // Calls `use(record, wasRemoved)` for the id's record; `wasRemoved()` tells, within that call, whether the module
    // has taken its registration back. False when the id has no record, has none any more when its turn comes, or when
    // the thread that is inside the record keeps waiting in the agent.
    template <class Use>
    bool With(std::wstring_view productId, Use&& use) {
        const EntryPointer entry = Find(productId);
        if (entry == nullptr) {
            return false;
        }
        const CallGate::Call call(entry->gate, admission, PatienceWith);
        if (!call) {
            return false;
        }
        use(entry->record, [&entry] { return entry->gate.IsClosed(); });
        return true;
    }

private:
    struct Entry {
        template <class... Arguments>
        explicit Entry(Arguments&&... arguments) : record(std::forward<Arguments>(arguments)...) {}

        Record record;
        CallGate gate;
    };
    using EntryPointer = std::shared_ptr<Entry>;

    // Look-ups by text alone: finding a record allocates nothing.
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::wstring_view text) const noexcept { return std::hash<std::wstring_view>{}(text); }
    };

    EntryPointer Find(std::wstring_view productId) {
        const ScopedLock guard(lock);
        const auto found = entries.find(productId);
        return found != entries.end() ? found->second : nullptr;
    }

    EntryPointer Take(std::wstring_view productId) {
        const ScopedLock guard(lock);
        const auto found = entries.find(productId);
        if (found == entries.end()) {
            return nullptr;
        }
        EntryPointer taken = std::move(found->second);
        entries.erase(found);
        return taken;
    }

    OwnerLock lock;
    std::unordered_map<std::wstring, EntryPointer, Hash, std::equal_to<>> entries GUARDED_BY(lock);
};

// The process's table of that kind: the interfaces of all modules.
template <class Table>
Table& TableOfProcess() {
    static NoDestroyAtExit<Table> table;
    return *table;
}

}  // namespace bridge
