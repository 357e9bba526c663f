#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "base/Mutex.h"

namespace bridge {

// A place for one object that threads share while another thread takes it away. Its lock is held for a copy, an
// exchange or a predicate alone.
template <class Object>
class SharedSlot {
public:
    using Pointer = std::shared_ptr<Object>;

    // The object, null when there is none.
    Pointer Share() const noexcept {
        const ScopedLock guard(lock);
        return object;
    }

    // Its address, to be compared and not to be used. Takes no lock.
    const Object* Address() const noexcept { return address.load(); }

    // Puts `next` in the object's place, and returns what was there.
    Pointer Exchange(Pointer next) noexcept {
        const ScopedLock guard(lock);
        return Replace(std::move(next));
    }

    // Puts `offered` in unless there is an object. Returns whether it did.
    bool Offer(const Pointer& offered) noexcept {
        const ScopedLock guard(lock);
        if (object != nullptr) {
            return false;
        }
        Replace(offered);
        return true;
    }

    // Takes the object out when `isMeant(object)`. Null when it stays, or when there is none.
    template <class Predicate>
    Pointer TakeIf(const Predicate& isMeant) noexcept {
        const ScopedLock guard(lock);
        return object != nullptr && isMeant(*object) ? Replace(nullptr) : nullptr;
    }

    // Whether there is an object of which `predicate(object)` is true. The calling thread does not become the last one
    // to share it.
    template <class Predicate>
    bool Satisfies(const Predicate& predicate) const noexcept {
        const ScopedLock guard(lock);
        return object != nullptr && predicate(*object);
    }

private:
    Pointer Replace(Pointer next) noexcept REQUIRES(lock) {
        address = next.get();
        object.swap(next);
        return next;
    }

    mutable Mutex lock;
    Pointer object GUARDED_BY(lock);
    std::atomic<Object*> address = nullptr;
};

}  // namespace bridge
