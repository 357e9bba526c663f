#include "values/DroppedText.h"

#include <atomic>

namespace {
std::atomic<DroppedTextListener> currentListener = nullptr;
}

DroppedTextListener SetDroppedTextListener(DroppedTextListener listener) noexcept {
    return currentListener.exchange(listener);
}

DroppedTextListener GetDroppedTextListener() noexcept {
    return currentListener.load(std::memory_order_relaxed);
}
