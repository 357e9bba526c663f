#include "tool/play/player/Hold.h"

#include <thread>

#include "ny_simulator.h"
#include "vsmsgbus_testing/Failure.hpp"

namespace tool::play {

void Hold::Block() {
    const std::lock_guard guard(mutex);
    isBlocked = true;
}

void Hold::Unblock() {
    const std::lock_guard guard(mutex);
    isBlocked = false;
    changed.notify_all();
}

void Hold::Delay(std::chrono::milliseconds newDelay) {
    const std::lock_guard guard(mutex);
    delay = newDelay;
}

size_t Hold::Waiting() const {
    const std::lock_guard guard(mutex);
    return waiting;
}

bool Hold::WaitUntilSomebodyWaits(std::chrono::milliseconds limit) {
    std::unique_lock guard(mutex);
    return changed.wait_for(guard, limit, [this] { return waiting != 0; });
}

void Hold::Pass() {
    std::unique_lock guard(mutex);
    const auto pause = delay;
    ++waiting;
    changed.notify_all();
    changed.wait(guard, [this] { return !isBlocked; });
    --waiting;
    guard.unlock();
    std::this_thread::sleep_for(pause);
}

Hold& Holds::Of(const std::string& function) {
    Hold& hold = holds[function];
    const ny_sim_hook_t hook = [](const char* /*function*/, void* userData) { static_cast<Hold*>(userData)->Pass(); };
    if (ny_sim_set_hook(function.c_str(), hook, &hold) != NY_OK) {
        throw vsmsgbus::testing::Failure("the simulated agent has no function " + function);
    }
    return hold;
}

void Holds::UnblockAll() {
    for (auto& [function, hold] : holds) {
        hold.Unblock();
    }
}

}  // namespace tool::play
