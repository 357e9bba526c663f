// The handles that users of the agent hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "simulator/core/handles/HandleKinds.h"

namespace simulator {

// A handle is a number that is never given out twice, so that a dead handle stays dead. It is no address, so that a
// program that reads through it faults at once. While a handle is alive, handing out the same object again gives the
// same handle with one more reference. An object without such references has no handle.
class HandleTable {
public:
    // Hands the object out as owned: one reference that the user releases.
    template <class Handle>
    Handle* Own(std::shared_ptr<typename HandleTraits<Handle>::Object> object) {
        return static_cast<Handle*>(Refer(HandleTraits<Handle>::kind, std::move(object), &References::owned));
    }

    // Hands the object out as borrowed, until EndLoan is called as often. The user cannot release it.
    template <class Handle>
    Handle* Lend(std::shared_ptr<typename HandleTraits<Handle>::Object> object) {
        return static_cast<Handle*>(Refer(HandleTraits<Handle>::kind, std::move(object), &References::lent));
    }

    // The object of a living handle. Throws Failure for null, HandleMisuse for a handle that is dead or of another
    // kind.
    template <class Handle>
    std::shared_ptr<typename HandleTraits<Handle>::Object> Get(Handle* handle) const {
        return std::static_pointer_cast<typename HandleTraits<Handle>::Object>(
            Find(HandleTraits<Handle>::kind, handle));
    }

    // Gives up one owned reference; throws as Get does, and HandleMisuse when none is left to give up.
    template <class Handle>
    void Release(Handle* handle) {
        Drop(HandleTraits<Handle>::kind, handle, &References::owned);
    }

    // Takes back one loan; throws as Release does.
    template <class Handle>
    void EndLoan(Handle* handle) {
        Drop(HandleTraits<Handle>::kind, handle, &References::lent);
    }

    // The kind of the handle; Any when it is not alive.
    HandleKind KindOf(const void* handle) const;

    // Handles with owned references.
    size_t CountOwned(HandleKind kind) const;

private:
    struct References {
        size_t owned = 0;
        size_t lent = 0;
    };

    struct Entry {
        HandleKind kind;
        std::shared_ptr<void> object;
        References references;
    };

    using Entries = std::unordered_map<uintptr_t, Entry>;

    void* Refer(HandleKind kind, std::shared_ptr<void> object, size_t References::*count);
    std::shared_ptr<void> Find(HandleKind kind, const void* handle) const;
    void Drop(HandleKind kind, const void* handle, size_t References::*count);
    Entries::const_iterator Locate(HandleKind kind, const void* handle) const;

    mutable std::mutex mutex;
    Entries entries;
    std::map<std::pair<HandleKind, const void*>, uintptr_t> handles;
    uintptr_t lastNumber = 0;
};

// The one table of this process; lives as TheFrame does.
HandleTable& Handles();

}  // namespace simulator
