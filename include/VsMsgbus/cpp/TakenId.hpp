/// @file
/// The ids of the module's products that are in the bridge. Used by ProductInterfaces.hpp alone.
#pragma once

#include <atomic>
#include <string>
#include <utility>

namespace vsmsgbus::detail {

/// The id of a product, which no other product of the module can take meanwhile. The layer is compiled into each
/// module: the ids of other modules are not seen.
class TakenId {
public:
    /// Takes nothing yet. The id outlives this object.
    explicit TakenId(const std::wstring& productId) : id(productId) {}
    ~TakenId() { GiveBack(); }
    TakenId(const TakenId&) = delete;
    TakenId& operator=(const TakenId&) = delete;

    /// Once. False when a product of the module has the id.
    bool Take() noexcept {
        const Locked locked;
        for (const TakenId* other = first; other != nullptr; other = other->next) {
            if (other->id == id) {
                return false;
            }
        }
        next = std::exchange(first, this);
        return true;
    }

    /// Nothing when the id is not taken.
    void GiveBack() noexcept {
        const Locked locked;
        for (TakenId** place = &first; *place != nullptr; place = &(*place)->next) {
            if (*place == this) {
                *place = next;
                return;
            }
        }
    }

private:
    // Held for some comparisons of ids. A module's library need not have threads and their locks.
    class Locked {
    public:
        Locked() noexcept {
            while (isLocked.test_and_set(std::memory_order_acquire)) {
            }
        }
        ~Locked() { isLocked.clear(std::memory_order_release); }
        Locked(const Locked&) = delete;
        Locked& operator=(const Locked&) = delete;
    };

    inline static std::atomic_flag isLocked;
    inline static TakenId* first = nullptr;

    const std::wstring& id;
    TakenId* next = nullptr;
};

}  // namespace vsmsgbus::detail
