#include "values/UnloggedText.h"

#include <atomic>

namespace bridge {

namespace {
std::atomic<UnloggedTextListener> currentListener = nullptr;
}

UnloggedTextListener SetUnloggedTextListener(UnloggedTextListener listener) noexcept {
    return currentListener.exchange(listener);
}

UnloggedTextListener GetUnloggedTextListener() noexcept {
    return currentListener.load(std::memory_order_relaxed);
}

}  // namespace bridge
