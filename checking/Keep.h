#pragma once

#include <memory>

namespace checking {

// Keeps an object that the bridge knew until it certainly knows it no more: while the next thousand are kept.
void KeepForNow(std::shared_ptr<void> object);

}  // namespace checking
