#include "checking/Keep.h"

#include <deque>
#include <utility>

#include "base/NoDestroyAtExit.h"
#include "checking/StateLock.h"

namespace checking {

namespace {

struct Kept {
    StateLock lock;
    std::deque<std::shared_ptr<void>> objects;
};

}  // namespace

void KeepForNow(std::shared_ptr<void> object) {
    constexpr size_t most = 1000;
    static bridge::NoDestroyAtExit<Kept> kept;
    std::shared_ptr<void> oldest;  // destroyed when the lock is left
    const Guard guard(kept->lock);
    kept->objects.push_back(std::move(object));
    if (kept->objects.size() > most) {
        oldest = std::move(kept->objects.front());
        kept->objects.pop_front();
    }
}

}  // namespace checking
